#include "support/LoopVolume.h"

#include <cstdlib>

namespace brisalon::tests {

LoopVolume::LoopVolume(const char* command, const std::string& argument)
{
    memory_.folder("volume");
    const std::string whole = "exec 2>/dev/null; PATH=$PATH:/sbin:/usr/sbin; set -- '" +
                              memory_.at("image") + "' '" + argument + "'; " + command +
                              " && mount -o loop \"$1\" '" + path() + '\'';
    isMounted_ = memory_.isInMemory() && std::system(whole.c_str()) == 0;
}

} // namespace brisalon::tests
