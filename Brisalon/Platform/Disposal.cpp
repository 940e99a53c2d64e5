#include "Brisalon/Platform/Disposal.h"

#include "Brisalon/Platform/FreedMemory.h"
#include "Brisalon/Platform/Workers.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <mutex>

namespace brisalon {

void destroyElsewhere(std::function<void()> destruction)
{
    // When statics are destroyed at exit, the pool has ended with the application.
    if (!QCoreApplication::instance())
        return destruction();
    // The hand-over to the pool, whose own lock the thread sanitizer does not see.
    static std::mutex handOver;
    const std::scoped_lock handing(handOver);
    workers().start([destruction = std::move(destruction)] {
        {
            const std::scoped_lock taking(handOver);
        }
        destruction();
        giveBackFreedMemory();
    });
}

} // namespace brisalon
