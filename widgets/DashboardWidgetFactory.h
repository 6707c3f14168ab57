#pragma once

#include <QIcon>
#include <QList>
#include <QString>

#include <functional>
#include <unordered_map>

class DashboardWidget;

// The registry of widget types: from a type's name to a function that makes one and to its icon. The palette
// lists it and the layout loader creates through it. It never owns a widget that it made.
class DashboardWidgetFactory
{
public:
    using Creator = std::function<DashboardWidget*()>;

    static DashboardWidgetFactory& instance();

    /// Adds the type, or replaces creator and icon of a type of that name.
    void registerType(const QString& name, Creator creator, const QIcon& icon);
    /// A new widget without a parent, owned by the caller; null for an unknown name (letter case counts).
    [[nodiscard]] DashboardWidget* create(const QString& name) const;
    /// Every registered name once, in no particular order.
    QList<QString> availableTypes() const;
    /// The type's icon; a default one for an unknown name.
    QIcon iconForType(const QString& name) const;
    /// Registers the types that come with the program; calling it again changes nothing. The table is in
    /// BuiltInWidgetTypes.cpp, so that the registry itself knows no widget.
    void registerBuiltInTypes();

private:
    DashboardWidgetFactory() = default;

    struct Entry
    {
        Creator creator;
        QIcon icon;
    };
    std::unordered_map<QString, Entry> m_entries;
};
