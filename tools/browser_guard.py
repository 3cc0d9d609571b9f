"""Whom the bridge of tools/browser lets in."""

import hmac
import ipaddress
import os
from urllib.parse import urlsplit

from websockify.auth_plugins import AuthenticationError, BasicHTTPAuth


def is_plain(host):
    """An address or this machine's own name: any other name may lead here without its owner's knowing."""
    if host == "localhost":
        return True
    try:
        ipaddress.ip_address(host)
        return True
    except ValueError:
        return False


class Guard(BasicHTTPAuth):
    """Only our own page opens the bridge, for a socket knows no borders between sites; and where there is a password in
    ITORV_PASSWORD, which no list of processes shows, only the user "itorv" with it.
    """

    def authenticate(self, headers, target_host, target_port):
        host = headers.get("Host", "")
        origin = headers.get("Origin")
        foreign = origin is not None and urlsplit(origin).netloc != host
        if foreign or not is_plain(urlsplit("//" + host).hostname):
            raise AuthenticationError(response_code=403, response_msg="This page is not iTorv's own.")
        if os.environ.get("ITORV_PASSWORD"):
            super().authenticate(headers, target_host, target_port)

    def validate_creds(self, username, password):
        # The bridge reads as Latin-1 what browsers send as UTF-8.
        return username == "itorv" and hmac.compare_digest(password.encode("latin-1"),
                                                           os.environ["ITORV_PASSWORD"].encode())
