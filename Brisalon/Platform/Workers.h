#pragma once

class QThreadPool;

namespace brisalon {

/// The threads that paint maps and take apart what is large, as many as there are
/// processors. Not Qt's global pool: older Qt takes threads of that to fill large shapes,
/// on the main thread too, which would wait there until such work is done. Waited for when
/// the application ends.
QThreadPool& workers();

} // namespace brisalon
