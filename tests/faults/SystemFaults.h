#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace brisalon::tests {

/// One request of the program to the system: which function, of what, and how many of
/// the same there were before it. With several threads at work the order of requests
/// changes from run to run; the request so named does not.
struct SystemCall {
    std::string function;
    std::string path; ///< as handed over; of a descriptor, where it leads
    int turn = 0;

    friend auto operator<=>(const SystemCall&, const SystemCall&) = default;
};

/// Stands between the program under test and the system: every function of the system
/// that the program asks for files with is defined anew here and passes its request on,
/// unless that is the one to fail. Linked only into the test program of faults.
///
/// One at a time, on any thread; `body` may use several.
class SystemFaults {
public:
    SystemFaults() = delete;

    /// The errors worth trying for the function.
    static std::span<const int> errorsOf(const std::string& function);

    /// Runs the body and returns the requests that it made.
    static std::vector<SystemCall> requestsOf(const std::function<void()>& body);
    /// Runs the body with that request failing; whether it came to it.
    static bool failing(const SystemCall& request, int error, const std::function<void()>& body);

    /// Runs the body, counting its allocations; throws what it throws.
    static int allocationsOf(const std::function<void()>& body);
    /// The same, with the sum of their bytes.
    static std::size_t bytesAllocatedBy(const std::function<void()>& body);
    /// Runs the body with the allocation of that number, from 0, throwing
    /// std::bad_alloc.
    static void failingAllocation(int number, const std::function<void()>& body);
};

} // namespace brisalon::tests
