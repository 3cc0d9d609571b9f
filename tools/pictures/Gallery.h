#pragma once

#include <memory>
#include <string>
#include <vector>

#include "screens/SwitchTableViewCell.h"
#include "screens/TableViewController.h"
#include "screens/TappableLabelTableViewCell.h"
#include "screens/TextValueGetterTableViewCell.h"

namespace pictures {

/// A table with one of everything that a table can show, for pictures and tests.
class Gallery final : public torv::TableViewController,
                      public torv::SwitchTableViewCellDelegate,
                      public torv::TappableLabelTableViewCellDelegate,
                      public torv::TextFieldDelegate {
public:
    enum Section { values, controls, deletable, empty };

    void viewDidLoad() override {
        setTitle(QStringLiteral("One of each"));
        using torv::BarButtonItem;
        setLeftBarButton(std::make_unique<BarButtonItem>("Close", [this] { heard += "close "; }));
        setRightBarButton(std::make_unique<BarButtonItem>(
            "Add", [this] { heard += "add "; }, "picture/ICON_ADD.png"));
        std::vector<std::unique_ptr<BarButtonItem>> items;
        items.push_back(std::make_unique<BarButtonItem>(
            "Delete", [this] { setEditing(!isEditing()); }, "picture/ICON_TRASH.png"));
        items.push_back(std::make_unique<BarButtonItem>("Export", [this] { heard += "export "; }));
        setToolbarItems(std::move(items));
    }
    [[nodiscard]] int numberOfSections() override { return 4; }
    [[nodiscard]] int numberOfRowsInSection(int section) override {
        return section == values      ? 6
               : section == controls  ? 3
               : section == deletable ? static_cast<int>(names.size())
                                      : 0;
    }
    [[nodiscard]] QString titleForHeaderInSection(int section) override {
        return section == values ? "Values" : section == controls ? "Controls" : QString{};
    }
    [[nodiscard]] torv::TableSectionView viewForHeaderInSection(int section) override {
        if (section == deletable)
            return {.text = "Choose your vehicle profile", .height = 45, .fontSize = 17, .centred = true};
        return TableViewController::viewForHeaderInSection(section);
    }
    [[nodiscard]] torv::TableSectionView viewForFooterInSection(int section) override {
        if (section != empty) return {};
        return {.text = "Enable your Internet connection to download updated vehicle profiles.",
                .height = 65,
                .fontSize = 14,
                .centred = true};
    }
    [[nodiscard]] std::shared_ptr<torv::TableViewCell> cellForRowAtIndexPath(torv::IndexPath path) override {
        using Cell = torv::TableViewCell;
        if (path.section == controls) return controlInRow(path.row);
        if (path.section == deletable) {
            auto cell = std::make_shared<Cell>(Cell::Style::Plain, "Name");
            cell->setText(names[path.row]);
            cell->setAccessory(Cell::Accessory::Detail);
            return cell;
        }
        const auto style = path.row == 1 ? Cell::Style::Subtitle : Cell::Style::ValueBesideTitle;
        auto cell = std::make_shared<Cell>(style, "Value");
        const std::vector<QStringList> texts{
            {"Shift Light", "3200 RPM"},
            {"Tire Size", "31.5 inches, as entered"},
            {"Boost Pressure", "52.4 PSI"},
            {"Default Profile", "2.1"},
            {"A vehicle that is just being downloaded", ""},
            {"A name that is much longer than any row of any screen could ever hold without an end",
             "and a value that is as long as that again"}};
        cell->setText(texts[static_cast<std::size_t>(path.row)][0]);
        cell->setDetailText(texts[static_cast<std::size_t>(path.row)][1]);
        if (path.row == 0) cell->setDetailValue("3200", "RPM");
        if (path.row == 0) cell->setNote("not taken by the module");
        cell->setAlarming(path.row == 2);
        cell->setBusy(path.row == 4);
        cell->setDimmed(path.row == 4);
        if (path.row < 2) cell->setAccessory(Cell::Accessory::Disclosure);
        if (path.row == 3) cell->setImage("checkmark.png");
        if (path.row == 3) cell->setMarks({"UPDATE_AVAILABLE.png", "checkmark.png"});
        return cell;
    }
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(torv::IndexPath path) override {
        return path != torv::IndexPath{values, 4};
    }
    [[nodiscard]] bool canDeleteRowAtIndexPath(torv::IndexPath path) override {
        return path.section == deletable && path.row > 0;
    }
    void deleteRowAtIndexPath(torv::IndexPath path) override {
        names.removeAt(path.row);
        reloadData();
    }
    void didSelectRowAtIndexPath(torv::IndexPath path) override { hear("row", path); }
    void accessoryButtonTappedForRowAtIndexPath(torv::IndexPath path) override { hear("detail", path); }
    void switchTableViewCellDidChangedValue(torv::SwitchTableViewCell&, bool on) override {
        heard += on ? "on " : "off ";
    }
    void tappableLabelTableViewCellDidChange(torv::TappableLabelTableViewCell&) override {
        heard += "label ";
    }
    void textFieldDidEndEditing(torv::TextValueGetterTableViewCell& cell) override {
        typed = cell.value().toStdString();
    }
    void textFieldShouldReturn(torv::TextValueGetterTableViewCell& cell) override {
        heard += "return:" + cell.value().toStdString() + " ";
        cell.resignFirstResponder();
    }

    QStringList names{"Default Profile", "Tow", "Race"};
    std::string heard;
    std::string typed;

private:
    std::shared_ptr<torv::TableViewCell> controlInRow(int row) {
        using Cell = torv::TableViewCell;
        if (row == 0) {
            auto cell = std::make_shared<torv::SwitchTableViewCell>(Cell::Style::Subtitle, "Switch");
            cell->setText("Turbo Brake");
            cell->setDetailText("30 %");
            cell->setDelegate(this);
            cell->setOffsetFromRight(60);
            cell->setAccessory(Cell::Accessory::Detail);
            return cell;
        }
        if (row == 1) {
            auto cell = std::make_shared<torv::TappableLabelTableViewCell>(Cell::Style::Subtitle, "Label");
            cell->setText("Shift Firmness");
            cell->setDetailText("12 levels");
            cell->setAdditionalLabel("Sport");
            cell->setDelegate(this);
            return cell;
        }
        auto cell = std::make_shared<torv::TextValueGetterTableViewCell>("Text");
        cell->setPlaceholder("3200");
        cell->setValue("3250");
        cell->setDelegate(this);
        return cell;
    }
    void hear(const char* what, torv::IndexPath path) {
        heard += what + std::to_string(path.section) + "/" + std::to_string(path.row) + " ";
    }
};

}  // namespace pictures
