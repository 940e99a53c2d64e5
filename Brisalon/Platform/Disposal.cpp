#include "Brisalon/Platform/Disposal.h"

#include "Brisalon/Platform/FreedMemory.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace brisalon {

void destroyElsewhere(std::function<void()> destruction)
{
    auto work = [destruction = std::move(destruction)] {
        destruction();
        giveBackFreedMemory();
    };
    // When statics are destroyed at exit, the pool has ended with the application.
    if (QCoreApplication::instance())
        QThreadPool::globalInstance()->start(std::move(work));
    else
        work();
}

} // namespace brisalon
