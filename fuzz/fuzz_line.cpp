// Any bytes from a port, cut into reads anywhere: the serial manager says what a plain parser says of the
// whole. The first byte is the size of the reads.

#include "serial/SerialManager.h"
#include "support/LineEvents.h"
#include "support/PlainGrammar.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const qsizetype readSize = data[0] % 64 + 1;
    const QByteArray bytes(reinterpret_cast<const char*>(data) + 1, qsizetype(size) - 1);

    static SerialManager manager; // one for all runs, as what it keeps between lines is part of the game
    LineEvents found;
    const QObject listener;
    found.listenTo(manager, &listener);
    manager.receive("\n"); // ends what the run before left
    found.clear();
    for (qsizetype begin = 0; begin < bytes.size(); begin += readSize)
        manager.receive(bytes.mid(begin, readSize));

    LineEvents expected;
    parseStreamPlainly(bytes, 0.0, expected);
    if (found.texts() != expected.texts())
        qFatal("expected\n%s\nfound\n%s", qPrintable(expected.texts().join(QLatin1Char('\n'))),
               qPrintable(found.texts().join(QLatin1Char('\n'))));
    return 0;
}
