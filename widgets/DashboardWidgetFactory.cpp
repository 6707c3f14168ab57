#include "widgets/DashboardWidgetFactory.h"

#include <utility>

DashboardWidgetFactory& DashboardWidgetFactory::instance()
{
    static DashboardWidgetFactory factory;
    return factory;
}

void DashboardWidgetFactory::registerType(const QString& name, Creator creator, const QIcon& icon)
{
    m_entries.insert_or_assign(name, Entry{std::move(creator), icon});
}

DashboardWidget* DashboardWidgetFactory::create(const QString& name) const
{
    const auto found = m_entries.find(name);
    return found == m_entries.end() ? nullptr : found->second.creator();
}

QList<QString> DashboardWidgetFactory::availableTypes() const
{
    QList<QString> names;
    names.reserve(qsizetype(m_entries.size()));
    for (const auto& [name, entry] : m_entries)
        names.append(name);
    return names;
}

QIcon DashboardWidgetFactory::iconForType(const QString& name) const
{
    const auto found = m_entries.find(name);
    return found == m_entries.end() ? QIcon(QStringLiteral(":/icons/default.png")) : found->second.icon;
}
