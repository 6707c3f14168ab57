#pragma once

#include "definitions/DashboardSignalParser.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

class QIODevice;
class SignalRecording;

// Writes a loaded recording as comma-separated values to a device: its signals, a row per frame or per sample
// time, or its events, a row each. CsvExportController has the dialogs and the files.

enum class CsvResult {
    Written,
    Cancelled,   ///< by keepGoing
    WriteFailed, ///< the device took less than it was given; one with a buffer must still be flushed
    Endless,     ///< the sample times do not reach the last frame within kMaxCsvRows rows
};

constexpr qint64 kMaxCsvRows = 100'000'000;

/// Called now and then with how much is done, 0 to 1; false ends the writing.
using KeepGoing = std::function<bool(double done)>;

/// One signal to write. It holds what the definitions say, so that they may change while a long export runs.
struct CsvColumn
{
    QString key;
    QString title;
    std::optional<DashboardMapping> mapping; ///< applied to each value; without one it is written as it is
};

/// The columns of these keys. With mappings and a catalogue the titles are display names with "(mapped)".
std::vector<CsvColumn> csvColumns(const QStringList& keys, bool applyMappings,
                                  const DashboardSignalParser* definitions);
/// sampleHz above 0 writes a row per sample time and holds values in between, else a row per frame. Whether
/// the rows end is known before the first one is written.
CsvResult writeSignalsCsv(QIODevice& device, const SignalRecording& recording,
                          const std::vector<CsvColumn>& columns, double sampleHz, const KeepGoing& keepGoing);
/// The texts beside ids are looked up before the first row. The catalogue may be null.
CsvResult writeEventsCsv(QIODevice& device, const SignalRecording& recording,
                         const DashboardSignalParser* definitions, const KeepGoing& keepGoing);
