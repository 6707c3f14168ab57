#pragma once

#include "definitions/DashboardSignalParser.h"

#include <QTemporaryFile>

#include <memory>

/// What a definitions file of these lines declares; the file itself is gone again.
inline std::unique_ptr<DashboardSignalParser> catalogueOf(const QByteArray& lines)
{
    QTemporaryFile file;
    const bool written = file.open() && file.write(lines) == lines.size() && file.flush();
    auto parser = std::make_unique<DashboardSignalParser>(file.fileName());
    if (!written || !parser->parse())
        qFatal("no catalogue");
    return parser;
}

/// Makes gSignalParser a catalogue of these lines for as long as it lives.
class ProjectCatalogue
{
public:
    explicit ProjectCatalogue(const QByteArray& lines)
        : m_parser(catalogueOf(lines))
    {
        gSignalParser = m_parser.get();
    }
    ~ProjectCatalogue() { gSignalParser = nullptr; }
    ProjectCatalogue(const ProjectCatalogue&) = delete;
    ProjectCatalogue& operator=(const ProjectCatalogue&) = delete;

private:
    std::unique_ptr<DashboardSignalParser> m_parser;
};
