#include "tuning/screens/ProfileEditViewController.h"

#include <limits>
#include <utility>

#include "platform/Platform.h"
#include "screens/DocumentExport.h"
#include "screens/NavigationController.h"
#include "screens/TypedNumber.h"
#include "support/TimeTexts.h"
#include "tuning/ProfileValues.h"
#include "tuning/screens/ExactValue.h"
#include "tuning/screens/ProfileDifferencesViewController.h"
#include "vehicles/StoreTrouble.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {
namespace {

constexpr auto listType = "list";
constexpr auto equalizerType = "equalizer";
constexpr auto theModule = "What the module holds now";

// Rows of lists carry their place in one number: the section in the low 16 bits, the row above them.
constexpr int rowShift = 16;
constexpr std::int32_t sectionMask = 0xFFFF;

QString nameOf(const TorvAttribute& item) {
    return QString::fromStdString(item.name.value_or(std::string{}));
}

}  // namespace

ProfileEditViewController::ProfileEditViewController(std::shared_ptr<iTorvAppDelegate> application,
                                                     const std::string& name, std::optional<Value> document)
    : m_application(std::move(application)),
      m_importVehicleInfo(std::move(document)),
      m_editor(name, VehicleDataSource::currentVehicle(), m_application->feeder()) {
    setTitle(QString::fromStdString(name));
}

void ProfileEditViewController::viewDidLoad() {
    m_database.emplace();
    m_idcode += m_database->count(m_editor.name());
    const bool isNew = m_idcode == 0;
    if (isNew) setRightBarButton(std::make_unique<BarButtonItem>("Save", [this] { save(); }));
    if (!isNew && !m_importVehicleInfo)
        setRightBarButton(std::make_unique<BarButtonItem>("Export", [this] { exportProfile(); }));
    std::vector<std::unique_ptr<BarButtonItem>> toolbar;
    toolbar.push_back(std::make_unique<BarButtonItem>("Compare", [this] { compare(); }));
    if (!isNew) toolbar.push_back(std::make_unique<BarButtonItem>("Save to file", [this] { saveToFile(); }));
    setToolbarItems(std::move(toolbar));
    if (m_importVehicleInfo) {
        m_editor.take(*m_importVehicleInfo);
    } else if (isNew) {
        m_editor.seed();
    }
}

void ProfileEditViewController::viewDidAppear() {
    const bool first = std::exchange(m_idcode, 1) != 1 || !m_importVehicleInfo;
    if (!m_importVehicleInfo || !first) return;
    const auto oddity = oddityOf(*m_importVehicleInfo, m_editor.vehicle());
    if (oddity.empty()) return;
    showAlert(std::make_shared<AlertView>("Please look this profile through", QString::fromStdString(oddity),
                                          QStringList{"OK"}));
}

const TorvAttributeGroup& ProfileEditViewController::group(int section) const {
    return m_editor.groups()[static_cast<std::size_t>(section)];
}

const TorvAttribute& ProfileEditViewController::itemOfTag(std::int32_t tag) const {
    return group(tag & sectionMask).items[static_cast<std::size_t>(tag >> rowShift)];
}

int ProfileEditViewController::numberOfSections() {
    return static_cast<int>(m_editor.groups().size());
}

int ProfileEditViewController::numberOfRowsInSection(int section) {
    return group(section).type == listType ? static_cast<int>(group(section).items.size()) : 1;
}

QString ProfileEditViewController::titleForHeaderInSection(int section) {
    return QString::fromStdString(group(section).name.value_or(std::string{}));
}

std::shared_ptr<TableViewCell> ProfileEditViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
    const auto& group = this->group(path.section);
    if (group.type == listType) {
        const auto& item = group.items[static_cast<std::size_t>(path.row)];
        cell->setTag(path.row << rowShift | path.section);
        cell->setText(nameOf(item));
        cell->setDetailValue(QString::fromStdString(m_editor.formattedValueForSetting(item).value),
                             QString::fromStdString(unitText(item.unit)));
    } else {
        cell->setTag(std::numeric_limits<std::int32_t>::max());
        cell->setText(titleForHeaderInSection(path.section));
        cell->setDetailText(QString::fromStdString(group.type.value_or(std::string{})));
    }
    cell->setAccessory(shouldHighlightRowAtIndexPath(path) ? TableViewCell::Accessory::Disclosure
                                                           : TableViewCell::Accessory::None);
    return cell;
}

bool ProfileEditViewController::shouldHighlightRowAtIndexPath(IndexPath path) {
    const auto& type = group(path.section).type;
    return type == listType || type == equalizerType;
}

void ProfileEditViewController::didSelectRowAtIndexPath(IndexPath path) {
    auto* const stack = navigationController();
    if (!stack) return;
    const auto& group = this->group(path.section);
    if (group.type == equalizerType) {
        std::vector<AVFormatterData> records;
        for (const auto& item : group.items)
            records.push_back(m_editor.formattedValueForSetting(item));
        const auto equalizer = EqualizerViewController::initForSettingGroupWithValues(group, records);
        equalizer->setTag(path.section);
        equalizer->setDelegate(this);
        return stack->pushViewControllerAnimated(equalizer, true);
    }
    const auto& item = group.items[static_cast<std::size_t>(path.row)];
    stack->pushViewControllerAnimated(exactValueScreen(item, m_editor.formattedValueForSetting(item).value,
                                                       path.row << rowShift | path.section, *this),
                                      true);
}

bool ProfileEditViewController::textValueGetterViewControllerShouldValidateValues(
    TextValueGetterViewController& screen) {
    return m_editor.accepts(itemOfTag(screen.tag()), typedNumber(screen.values().value(0)));
}

QString ProfileEditViewController::textValueGetterViewControllerDidRequestTitleForValidationError(
    TextValueGetterViewController&) {
    return outOfRangeTitle;
}

QString ProfileEditViewController::textValueGetterViewControllerDidRequestMessageForValidationError(
    TextValueGetterViewController& screen) {
    const auto range = m_editor.range(itemOfTag(screen.tag()));
    return outOfRangeMessage(range.lowest, range.highest);
}

void ProfileEditViewController::textValueGetterViewControllerDidGetValue(
    TextValueGetterViewController& screen) {
    m_editor.setText(itemOfTag(screen.tag()), typedNumber(screen.values().value(0)));
    reloadData();
    screen.popIfOnTop();
}

void ProfileEditViewController::didRequestSaveValuesForEqualizer(EqualizerViewController& equalizer) {
    m_editor.setRecords(group(equalizer.tag()).items, equalizer.values());
    reloadData();
    equalizer.popIfOnTop();
}

void ProfileEditViewController::save() {
    // Without its values a name would be a profile that sends nothing.
    if (!defaults().synchronize()) {
        const auto sentence = sentenceFor(StoreTrouble::unwritable);
        return showAlert(std::make_shared<AlertView>(
            "Not saved", QString::fromUtf8(sentence.data(), static_cast<qsizetype>(sentence.size())),
            QStringList{"OK"}));
    }
    m_database->add(m_editor.name());
    auto* const stack = navigationController();
    if (!stack) return;
    if (m_importVehicleInfo) return stack->popToRootViewControllerAnimated(true);
    constexpr int listUnderTheMenu = 1;
    stack->popToIndexAnimated(listUnderTheMenu, true);
}

Document ProfileEditViewController::document() const {
    const auto text = m_editor.document().value_or(std::string{});
    return {.fileName = "iTorv-" + fileTimeText(wallNow()) + ".json",
            .mimeType = "application/json",
            .contents = {text.begin(), text.end()}};
}

void ProfileEditViewController::exportProfile() {
    mailDocument(*this, "Your Torvwerks Custom Tuning Export", document());
}

/// Under a name that the desktop opens with this program.
void ProfileEditViewController::saveToFile() {
    auto saved = document();
    saved.fileName.replace(saved.fileName.rfind(".json"), std::string::npos, ".itorv.json");
    saveDocument(*this, saved);
}

void ProfileEditViewController::compare() {
    auto* const stack = navigationController();
    if (!stack) return;
    QStringList others{theModule};
    for (const auto& name : m_database->names()) {
        if (name != m_editor.name()) others.push_back(QString::fromStdString(name));
    }
    const auto picker = TablePickerViewController::initWithTitleValuesSelectedValue(
        QStringLiteral("Compare with"), others, QString{});
    picker->setDelegate(this);
    stack->pushViewControllerAnimated(picker, true);
}

/// Nothing, after a word to the user, where the module does not tell all of it.
std::optional<ProfileDictionary> ProfileEditViewController::valuesOfModule() {
    const auto self = shared_from_this();  // asking blocks, and the screen may be left meanwhile
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert)), std::nullopt;
    const auto pass = m_application->beginPass();
    ProfileDictionary values;
    for (const auto& item : m_editor.vehicle().tuningItems()) {
        if (!m_application->connected() || !readBack(*m_application->feeder(), item.aid)) {
            showAlert(std::make_shared<AlertView>("No answer", "The module does not tell its values now.",
                                                  QStringList{"OK"}));
            return std::nullopt;
        }
        values.insert_or_assign(item.aid, m_application->feeder()->valueForAID(item.aid));
    }
    return values;
}

void ProfileEditViewController::tablePickerViewControllerDidPickValue(TablePickerViewController& picker,
                                                                      const QString& value) {
    const auto chosen = std::static_pointer_cast<TablePickerViewController>(picker.shared_from_this());
    const bool isModule = value == theModule && picker.values().indexOf(value) == 0;
    const auto other =
        isModule ? valuesOfModule() : ProfileValues::load(value.toStdString()).value_or(ProfileDictionary{});
    auto* const stack = chosen->navigationController();
    if (!stack || stack->topViewController() != chosen.get()) return;
    chosen->popIfOnTop();
    if (!other) return;
    stack->pushViewControllerAnimated(
        std::make_shared<ProfileDifferencesViewController>(
            title(), value, differencesOf(m_editor.settingValues(), *other, m_editor.vehicle())),
        true);
}

}  // namespace torv

#include "moc_ProfileEditViewController.cpp"
