#include "LoopVolume.h"

#include <cstdlib>

#include <sys/mount.h>

namespace brisalon::tests {

LoopVolume::LoopVolume() : LoopVolume("truncate -s 16M \"$1\" && mkfs.ext4 -q -F \"$1\"") {}

LoopVolume LoopVolume::afterPowerFailure(const LoopVolume& other)
{
    return LoopVolume("cp '" + other.memory_.at("image") + "' \"$1\"");
}

LoopVolume::LoopVolume(const std::string& command)
{
    memory_.folder("volume");
    const std::string commands = "PATH=$PATH:/sbin:/usr/sbin; set -- '" + memory_.at("image") +
                                 "'; " + command + " && mount -o loop \"$1\" " +
                                 memory_.at("volume");
    isMounted_ =
        memory_.isInMemory() && std::system(("(" + commands + ") 2>/dev/null").c_str()) == 0;
}

LoopVolume::~LoopVolume()
{
    if (isMounted_)
        ::umount2(memory_.at("volume").c_str(), MNT_DETACH);
}

} // namespace brisalon::tests
