// Any bytes as a definitions file: whatever is found, the queries agree with the lists.

#include "definitions/DashboardSignalParser.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdint>

namespace {

void check(bool holds, const char* what)
{
    if (!holds)
        qFatal("violated: %s", what);
}

void checkSignals(const DashboardSignalParser& parser)
{
    const QList<DashboardSignal> all = parser.signalList();
    for (const DashboardSignal& one : all) {
        const auto sameName = [&](const DashboardSignal& other) { return other.enumName == one.enumName; };
        const auto first = std::find_if(all.begin(), all.end(), sameName);
        check(parser.findSignalByEnum(one.enumName)->displayName == first->displayName,
              "first signal is found");
        check(!one.enumName.isEmpty() && !one.displayName.isEmpty(), "signals have names");
    }
}

void checkMappings(const DashboardSignalParser& parser)
{
    const QList<DashboardMapping> all = parser.mappingList();
    for (const DashboardMapping& one : all) {
        const auto sameName = [&](const DashboardMapping& other) { return other.name == one.name; };
        const auto first = std::find_if(all.begin(), all.end(), sameName);
        const auto last = std::find_if(all.rbegin(), all.rend(), sameName);
        check(parser.findMappingByName(one.name)->offset == first->offset, "first mapping is found");
        check(parser.mappingMap().value(one.name).offset == last->offset, "last mapping is in the map");
    }
}

void checkStates(const DashboardSignalParser& parser)
{
    for (const QString& id : parser.stateGroupIds()) {
        check(parser.findStateGroup(id)->id == id, "group is found");
        for (const DashboardState& state : parser.statesForGroup(id)) {
            check(state.group == id, "state is in its group");
            check(parser.findState(id, state.name).has_value(), "state is found");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("input.def")));
    const auto length = qint64(size);
    check(file.open(QIODevice::WriteOnly) &&
              file.write(reinterpret_cast<const char*>(data), length) == length,
          "the input can be written");
    file.close();

    DashboardSignalParser parser(file.fileName());
    check(parser.parse(), "a readable file parses");
    checkSignals(parser);
    checkMappings(parser);
    checkStates(parser);
    const qsizetype signalCount = parser.signalList().size();
    check(parser.parse() && parser.signalList().size() == signalCount, "parsing again gives the same");
    return 0;
}
