#include "Brisalon/Platform/Workers.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace brisalon {

QThreadPool& workers()
{
    static QThreadPool pool;
    static const bool isWaitedFor = [] {
        qAddPostRoutine([] { pool.waitForDone(); });
        return true;
    }();
    Q_UNUSED(isWaitedFor)
    return pool;
}

} // namespace brisalon
