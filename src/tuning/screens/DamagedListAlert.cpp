#include "tuning/screens/DamagedListAlert.h"

#include "tuning/ProfileList.h"

namespace torv {
namespace {

constexpr int tryAgainButton = 1;
constexpr int beginAnewButton = 2;

}  // namespace

void askAboutDamagedList(ViewController& screen, const std::function<void()>& readable) {
    if (ProfileList::damagedFile().empty()) return;
    auto alert = std::make_shared<AlertView>(
        "The list of profiles could not be read",
        QStringLiteral(
            "It stays as it is in %1. A new list can be made of the profiles whose values are stored.")
            .arg(QString::fromStdString(ProfileList::damagedFile().string())),
        QStringList{"Not now", "Try again", "New list"});
    alert->setDismissedHandler([weak = screen.weak_from_this(), readable](int index) {
        const auto shown = weak.lock();
        if (!shown || index < tryAgainButton) return;
        if (index == beginAnewButton && !ProfileList::beginAnew()) {
            return shown->showAlert(std::make_shared<AlertView>(
                "No new list", "The old list can't be moved out of the way.", QStringList{"OK"}));
        }
        if (index == tryAgainButton && !ProfileList::tryAgain()) return askAboutDamagedList(*shown, readable);
        if (readable) readable();
    });
    screen.showAlert(std::move(alert));
}

}  // namespace torv
