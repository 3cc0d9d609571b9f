#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "screens/TableViewController.h"

namespace torv {

/// The list of all screens but the dashboards. Main thread.
class MainMenuViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    struct Row {
        QString text;
        /// The row's screen, made anew at each choice.
        std::function<std::shared_ptr<ViewController>()> make;
    };

    /// The first row bears the vehicle's name; the last one is there for a vehicle with trouble codes only.
    explicit MainMenuViewController(std::vector<Row> rows) : m_rows(std::move(rows)) {}

    void viewDidLoad() override;
    void viewWillAppear() override;
    void back() { dismissModalViewControllerAnimated(true); }

    [[nodiscard]] int numberOfRowsInSection(int) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

private:
    const std::vector<Row> m_rows;
    QString m_vehicleName;
    bool m_dtcenabled = false;
};

}  // namespace torv
