#include "definitions/DashboardSignalParser.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

const DashboardSignalParser* gSignalParser = nullptr;

namespace {

// Every declaration begins with this, so that any other line costs one comparison and no pattern.
constexpr QLatin1String kMacroPrefix("DASHBOARD_");

// The numbers' quantifiers are possessive: giving a digit back never leads to a match, and trying it takes
// time quadratic in the digits when a number of a million digits is not followed by a comma.
const QRegularExpression& mappingPattern()
{
    static const QRegularExpression pattern(QStringLiteral(
        R"(^\s*DASHBOARD_MAPPING\s*\(\s*(\w+)\s*,\s*(-?\d++\.?+\d*+)\s*,\s*(-?\d++\.?+\d*+)\s*\))"));
    return pattern;
}

const QRegularExpression& signalPattern()
{
    static const QRegularExpression pattern(
        QStringLiteral(R"re(^\s*DASHBOARD_SIGNAL\s*\(\s*(\w+)\s*,\s*"([^"]+)"\s*,\s*(\w+)\s*\))re"));
    return pattern;
}

const QRegularExpression& stateGroupPattern()
{
    static const QRegularExpression pattern(
        QStringLiteral(R"re(^\s*DASHBOARD_STATE_GROUP\s*\(\s*(\w+)\s*,\s*"([^"]+)"\s*\))re"));
    return pattern;
}

const QRegularExpression& statePattern()
{
    static const QRegularExpression pattern(
        QStringLiteral(R"re(^\s*DASHBOARD_STATE\s*\(\s*(\w+)\s*,\s*(\w+)\s*,\s*"([^"]+)"\s*\))re"));
    return pattern;
}

const QRegularExpression& errorPattern()
{
    static const QRegularExpression pattern(
        QStringLiteral(R"re(^\s*DASHBOARD_ERROR\s*\(\s*(\w+)\s*,\s*(-?\d+)\s*,\s*"([^"]+)"\s*\))re"));
    return pattern;
}

QString stateKey(const QString& groupId, const QString& stateName)
{
    return QLatin1String("ST_") + groupId + QLatin1Char('_') + stateName;
}

// A record of a list that an index map points into, or nothing.
template <typename Record, typename Index, typename Key>
std::optional<Record> lookUp(const QList<Record>& records, const Index& indices, const Key& key)
{
    const auto found = indices.constFind(key);
    if (found == indices.constEnd())
        return std::nullopt;
    return records.at(found.value());
}

} // namespace

DashboardSignalParser::DashboardSignalParser(const QString& path)
    : m_path(path)
{}

bool DashboardSignalParser::parse()
{
    reset();
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        m_errorString = QStringLiteral("Could not open file: %1").arg(m_path);
        return false;
    }
    QTextStream stream(&file);
    QString line;
    while (stream.readLineInto(&line))
        parseLine(line.trimmed());
    return true;
}

void DashboardSignalParser::reset() { *this = DashboardSignalParser(m_path); }

void DashboardSignalParser::parseLine(const QString& line)
{
    if (!line.startsWith(kMacroPrefix)) // comments and everything else that declares nothing
        return;
    if (const auto mapping = mappingPattern().match(line); mapping.hasMatch())
        addMapping({mapping.captured(1), mapping.captured(2).toDouble(), mapping.captured(3).toDouble()});
    else if (const auto signal = signalPattern().match(line); signal.hasMatch())
        addSignal({signal.captured(1), signal.captured(2), signal.captured(3)});
    else if (const auto group = stateGroupPattern().match(line); group.hasMatch())
        addStateGroup(group.captured(1), group.captured(2));
    else if (const auto state = statePattern().match(line); state.hasMatch())
        addState(state.captured(1), state.captured(2), state.captured(3));
    else if (const auto error = errorPattern().match(line); error.hasMatch())
        addError({error.captured(1), error.captured(2).toInt(), error.captured(3)});
}

void DashboardSignalParser::addMapping(const DashboardMapping& mapping)
{
    if (!m_firstMappingByName.contains(mapping.name))
        m_firstMappingByName.insert(mapping.name, m_mappings.size());
    m_mappings.append(mapping);
    m_mappingByName.insert(mapping.name, mapping);
}

void DashboardSignalParser::addSignal(const DashboardSignal& signal)
{
    if (!m_firstSignalByEnum.contains(signal.enumName))
        m_firstSignalByEnum.insert(signal.enumName, m_signals.size());
    m_signals.append(signal);
}

void DashboardSignalParser::addStateGroup(const QString& id, const QString& label)
{
    m_stateGroupById.insert(id, int(m_stateGroups.size()));
    m_stateGroups.append({id, label});
}

void DashboardSignalParser::addState(const QString& groupId, const QString& name, const QString& label)
{
    if (!m_stateGroupById.contains(groupId))
        addStateGroup(groupId, groupId);
    const QString key = stateKey(groupId, name);
    const int index = int(m_states.size());
    m_states.append({groupId, name, label, key});
    m_statesByGroup[groupId].append(index);
    m_stateByKey.insert(key, index);
}

void DashboardSignalParser::addError(const DashboardError& error)
{
    const int index = int(m_errors.size());
    m_errors.append(error);
    m_errorById.insert(error.id, index);
    m_errorByCode.insert(error.code, index);
}

std::optional<DashboardSignal> DashboardSignalParser::findSignalByEnum(const QString& enumName) const
{
    return lookUp(m_signals, m_firstSignalByEnum, enumName);
}

std::optional<DashboardMapping> DashboardSignalParser::findMappingByName(const QString& name) const
{
    return lookUp(m_mappings, m_firstMappingByName, name);
}

QList<DashboardState> DashboardSignalParser::statesForGroup(const QString& groupId) const
{
    const QList<int> indices = m_statesByGroup.value(groupId);
    QList<DashboardState> states;
    states.reserve(indices.size());
    for (const int index : indices)
        states.append(m_states.at(index));
    return states;
}

std::optional<DashboardStateGroup> DashboardSignalParser::findStateGroup(const QString& groupId) const
{
    return lookUp(m_stateGroups, m_stateGroupById, groupId);
}

std::optional<DashboardState> DashboardSignalParser::findState(const QString& groupId,
                                                               const QString& stateName) const
{
    return lookUp(m_states, m_stateByKey, stateKey(groupId, stateName));
}

std::optional<DashboardError> DashboardSignalParser::findErrorById(const QString& id) const
{
    return lookUp(m_errors, m_errorById, id);
}

std::optional<DashboardError> DashboardSignalParser::findErrorByCode(int code) const
{
    return lookUp(m_errors, m_errorByCode, code);
}

std::optional<DashboardMapping> DashboardSignalParser::mappingOfSignal(const QString& enumName) const
{
    const auto signal = findSignalByEnum(enumName);
    return signal ? findMappingByName(signal->mappingName) : std::nullopt;
}

QString DashboardSignalParser::displayName(const QString& enumName) const
{
    const auto signal = findSignalByEnum(enumName);
    return signal && !signal->displayName.isEmpty() ? signal->displayName : enumName;
}

QString DashboardSignalParser::stateLabel(const QString& groupId, const QString& stateName) const
{
    const auto state = findState(groupId, stateName);
    return state && !state->label.isEmpty() ? state->label : stateName;
}

QString DashboardSignalParser::errorText(const QString& id) const
{
    const auto error = findErrorById(id);
    return error && !error->message.isEmpty() ? error->message : id;
}

QStringList DashboardSignalParser::stateGroupIds() const
{
    QStringList ids;
    ids.reserve(m_stateGroups.size());
    for (const DashboardStateGroup& group : m_stateGroups)
        ids.append(group.id);
    return ids;
}
