#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brisalon::detail {

/// The names that were met in one folder, to notice one that a file system lists twice:
/// some do while entries are removed and made again, others because they lie.
///
/// Made to be reused from folder to folder, so that a small one costs no allocation
/// even after a large one. A hash table with open addressing.
class NameSet {
public:
    NameSet() : slots_(fewest) {}

    /// Forgets all names.
    void clear() noexcept;

    /// False when the name is there already.
    bool add(std::string_view name);

private:
    struct Name {
        std::size_t hash;
        std::size_t end; ///< of its bytes, which follow the name before
    };
    static constexpr std::size_t fewest = 64;

    std::string_view text(std::uint32_t number) const noexcept;
    void spread() noexcept;

    std::string texts_;
    std::vector<Name> names_;
    std::vector<std::uint32_t> slots_; ///< numbers of names from 1 on; 0: free
    std::size_t used_ = fewest;        ///< how many slots take part, a power of two
};

} // namespace brisalon::detail
