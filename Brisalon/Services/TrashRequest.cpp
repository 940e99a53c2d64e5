#include "Brisalon/Services/TrashRequest.h"

#include "BrisalonCore/DeleteRules.h"

namespace brisalon {

TrashRequest TrashRequest::make(const std::vector<FileURL>& selection, std::int64_t bytes)
{
    TrashRequest request{.urls = {}, .bytes = bytes, .blockedCount = 0, .items = {}};
    const DeleteRules rules;
    for (const FileURL& url : selection) {
        if (rules.allow(url))
            request.urls.push_back(url);
        else
            ++request.blockedCount;
    }
    request.items = TrashItem::record(request.urls);
    return request;
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
