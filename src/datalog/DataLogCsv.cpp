#include "datalog/DataLogCsv.h"

#include "support/TextNumbers.h"

namespace torv {

bool writeDataLogCsv(std::span<const DataLogColumn> columns, const TextSink& write) {
    if (columns.empty()) return true;
    std::string line;
    for (const auto& column : columns) {
        if (!line.empty()) line += ',';
        line += "Timestamp," + column.name;
    }
    bool found = true;
    while (found) {
        line += '\n';
        if (!write(line)) return false;
        line.clear();
        found = false;
        for (const auto& column : columns) {
            if (&column != columns.data()) line += ',';
            const auto sample = column.next();
            if (sample) line += logTimeText(sample->time);
            line += ',';
            if (sample) line += fixedText(sample->value, column.decimaldigits);
            found = found || sample.has_value();
        }
    }
    return true;
}

}  // namespace torv
