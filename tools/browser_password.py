"""What websockify asks whether a browser may come in (tools/browser)."""

import hmac
import os

from websockify.auth_plugins import BasicHTTPAuth


class Password(BasicHTTPAuth):
    """The user "itorv" with the password in ITORV_PASSWORD, which no list of processes shows."""

    def validate_creds(self, username, password):
        return username == "itorv" and hmac.compare_digest(password.encode(), os.environ["ITORV_PASSWORD"].encode())
