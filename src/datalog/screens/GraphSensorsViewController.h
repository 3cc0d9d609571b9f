#pragma once

#include <memory>

#include "datalog/screens/GraphViewController.h"
#include "screens/TableViewController.h"

namespace torv {

/// Which sensors a graph shows, by check marks. Main thread.
class GraphSensorsViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    explicit GraphSensorsViewController(std::shared_ptr<GraphViewController> graph)
        : m_graph(std::move(graph)) {
        setTitle(QStringLiteral("Sensors"));
    }

    [[nodiscard]] int numberOfRowsInSection(int) override {
        return static_cast<int>(m_graph->sensors().size());
    }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

private:
    const std::shared_ptr<GraphViewController> m_graph;
};

}  // namespace torv
