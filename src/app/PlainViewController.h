#pragma once

#include "screens/TableViewController.h"

namespace torv {

/// A screen that is not there yet. Main thread.
class PlainViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    explicit PlainViewController(const QString& title) { setTitle(title); }

    [[nodiscard]] int numberOfRowsInSection(int) override { return 0; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath) override { return nullptr; }
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral("This comes with a later version.");
    }
};

}  // namespace torv
