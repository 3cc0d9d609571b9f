#include "tuning/screens/ProfileNameViewController.h"

#include "screens/NavigationController.h"
#include "tuning/ProfileEditor.h"
#include "tuning/ProfileValues.h"
#include "tuning/screens/ProfileEditViewController.h"

namespace torv {
namespace {

constexpr int useButton = 1;

}  // namespace

void ProfileNameViewController::viewDidLoad() {
    m_database.emplace();
    setTitle(QStringLiteral("Profile Name"));
    setRightBarButton(std::make_unique<BarButtonItem>("Next", [this] { Next(); }));
    if (m_importVehicleInfo) m_name = QString::fromStdString(profileNameOf(*m_importVehicleInfo));
}

void ProfileNameViewController::viewDidAppear() {
    if (auto* const cell = field()) cell->becomeFirstResponder();
}

std::shared_ptr<TableViewCell> ProfileNameViewController::cellForRowAtIndexPath(IndexPath) {
    const auto identifier = QStringLiteral("TextValueGetterTableViewCell");
    auto cell = std::dynamic_pointer_cast<TextValueGetterTableViewCell>(dequeueReusableCell(identifier));
    if (!cell) cell = std::make_shared<TextValueGetterTableViewCell>(identifier);
    constexpr std::int64_t words = 1;
    cell->setDelegate(this);
    cell->setInput({.keyboardType = usualKeyboard, .autocapitalizationType = words});
    cell->setPlaceholder(QStringLiteral("Profile Name"));
    cell->setClearsOnBeginEditing(!m_importVehicleInfo);
    cell->setValue(m_name);
    return cell;
}

void ProfileNameViewController::didSelectRowAtIndexPath(IndexPath) {
    if (auto* const cell = field()) cell->becomeFirstResponder();
}

TextValueGetterTableViewCell* ProfileNameViewController::field() const {
    return dynamic_cast<TextValueGetterTableViewCell*>(cellAt({0, 0}));
}

void ProfileNameViewController::Next() {
    if (auto* const cell = field()) {
        cell->resignFirstResponder();
        m_name = cell->value();
    }
    const auto name = m_name.section(QChar{u'\0'}, 0, 0).toStdString();  // as far as a C text goes
    if (m_database->count(name) != 0) {
        return showAlert(std::make_shared<AlertView>("Nae Taken", "There is already a Profile with that name",
                                                     QStringList{"Ok"}));
    }
    if (!isSystemKey(name)) return goOn(name);
    auto alert = std::make_shared<AlertView>(
        "A name in use",
        "iTorv keeps something of its own under this name, which a profile of this name would overwrite.",
        QStringList{"Cancel", "Use it"});
    alert->setDismissedHandler([this, self = weak_from_this(), name](int index) {
        if (self.lock() && index == useButton) goOn(name);
    });
    showAlert(std::move(alert));
}

void ProfileNameViewController::goOn(const std::string& name) {
    auto* const stack = navigationController();
    if (!stack || stack->topViewController() != this) return;
    stack->pushViewControllerAnimated(
        std::make_shared<ProfileEditViewController>(m_application, name, m_importVehicleInfo), true);
}

}  // namespace torv

#include "moc_ProfileNameViewController.cpp"
