#include "Brisalon/Services/TrashRequest.h"

#include "BrisalonCore/DeleteRules.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace brisalon {

TrashRequest TrashRequest::make(const std::vector<FileURL>& selection, std::int64_t bytes,
                                const std::stop_token& stop)
{
    // So many that a folder is looked up once for many of its items.
    constexpr std::size_t atOnce = 1'000;
    TrashRequest request{.urls = {}, .bytes = bytes, .blockedCount = 0, .items = {}};
    const DeleteRules rules;
    std::span<const FileURL> left = selection;
    while (!left.empty() && !stop.stop_requested()) {
        const std::size_t recorded = request.urls.size();
        const auto some = left.first(std::min(atOnce, left.size()));
        left = left.subspan(some.size());
        for (const FileURL& url : some) {
            if (rules.allow(url))
                request.urls.push_back(url);
            else
                ++request.blockedCount;
        }
        std::ranges::move(TrashItem::record(std::span(request.urls).subspan(recorded)),
                          std::back_inserter(request.items));
    }
    return request;
}

std::int64_t TrashRequest::bytesOf(std::size_t index) const
{
    return urls.size() == 1 && blockedCount == 0 ? bytes : items[index].allocatedBytes;
}

std::string TrashRequest::id() const
{
    std::string result;
    for (const FileURL& url : urls) {
        if (&url != &urls.front())
            result += '|';
        result += url.path();
    }
    return result;
}

} // namespace brisalon
