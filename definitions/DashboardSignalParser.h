#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

// The catalogue of a project: what its device can print, read from one file of C-preprocessor macro lines
// that the firmware includes as well. Everybody who needs a signal's name, mapping, state or error text asks
// it. It reads the file only in parse(), never watches it, and shows nothing to the user.

/// A linear unit mapping: physical value = offset + raw × scale.
struct DashboardMapping
{
    QString name;
    double offset = 0.0;
    double scale = 0.0;

    double physical(double raw) const { return offset + raw * scale; }
};

/// One signal. The numeric fields are reserved: no line of the file can fill them, they are always 0.
struct DashboardSignal
{
    QString enumName;    ///< the key that the device prints
    QString displayName; ///< the human name
    QString mappingName; ///< any word; need not be declared
    qint64 reserved0 = 0;
    qint64 reserved1 = 0;
};

struct DashboardStateGroup
{
    QString id;
    QString label;
};

/// One state of a group; key is always "ST_<group>_<name>".
struct DashboardState
{
    QString group;
    QString name;
    QString label;
    QString key;
};

struct DashboardError
{
    QString id;
    int code = 0;
    QString message;
};

class DashboardSignalParser
{
public:
    /// Keeps the path; reads nothing until parse().
    explicit DashboardSignalParser(const QString& path);

    /// Replaces the catalogue by what the file holds. False only when the file cannot be opened for reading
    /// (see errorString()); lines that match nothing are ignored.
    [[nodiscard]] bool parse();
    /// Empties the catalogue and the error text.
    void reset();

    QString path() const { return m_path; }
    /// Empty, or "Could not open file: <path>" after a parse() that returned false.
    QString errorString() const { return m_errorString; }

    QList<DashboardMapping> mappingList() const { return m_mappings; }
    QList<DashboardSignal> signalList() const { return m_signals; }
    /// By name; for a name declared twice the last declaration (findMappingByName() gives the first).
    QMap<QString, DashboardMapping> mappingMap() const { return m_mappingByName; }

    /// First declaration of that exact name, at the cost of a hash lookup.
    std::optional<DashboardSignal> findSignalByEnum(const QString& enumName) const;
    /// First declaration of that exact name, at the cost of a hash lookup.
    std::optional<DashboardMapping> findMappingByName(const QString& name) const;

    /// The group's states in declaration order; empty for an unknown group.
    QList<DashboardState> statesForGroup(const QString& groupId) const;
    /// Last declaration of the group.
    std::optional<DashboardStateGroup> findStateGroup(const QString& groupId) const;
    /// Last declaration of the key "ST_<group>_<name>".
    std::optional<DashboardState> findState(const QString& groupId, const QString& stateName) const;
    std::optional<DashboardError> findErrorById(const QString& id) const;
    std::optional<DashboardError> findErrorByCode(int code) const;
    /// The id of every group record, in order of first appearance; an id declared twice stands twice.
    QStringList stateGroupIds() const;

    // What the user reads or sees of a raw value, a name or an id; what is not declared stands for itself.

    /// The mapping that the signal names; nothing when either is not declared.
    std::optional<DashboardMapping> mappingOfSignal(const QString& enumName) const;
    QString displayName(const QString& enumName) const;
    QString stateLabel(const QString& groupId, const QString& stateName) const;
    QString errorText(const QString& id) const;

private:
    void parseLine(const QString& line);
    void addMapping(const DashboardMapping& mapping);
    void addSignal(const DashboardSignal& signal);
    void addStateGroup(const QString& id, const QString& label);
    void addState(const QString& groupId, const QString& name, const QString& label);
    void addError(const DashboardError& error);

    QString m_path;
    QString m_errorString;
    QList<DashboardMapping> m_mappings;
    QMap<QString, DashboardMapping> m_mappingByName;
    QHash<QString, qsizetype> m_firstMappingByName;
    QList<DashboardSignal> m_signals;
    QHash<QString, qsizetype> m_firstSignalByEnum;
    QList<DashboardStateGroup> m_stateGroups;
    QMap<QString, int> m_stateGroupById;
    QList<DashboardState> m_states;
    QMap<QString, QList<int>> m_statesByGroup;
    QMap<QString, int> m_stateByKey;
    QList<DashboardError> m_errors;
    QMap<QString, int> m_errorById;
    QMap<int, int> m_errorByCode;
};

/// The project's catalogue; null until a project is loaded. Set by ActiveDefinitions only.
extern const DashboardSignalParser* gSignalParser;
