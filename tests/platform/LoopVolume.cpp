#include "LoopVolume.h"

#include <cstdlib>

#include <sys/mount.h>

namespace brisalon::tests {

LoopVolume::LoopVolume()
{
    memory_.folder("volume");
    memory_.file("image", 16 * 1024 * 1024);
    const std::string image = memory_.at("image");
    const std::string commands = "PATH=$PATH:/sbin:/usr/sbin; mkfs.ext4 -q -F " + image +
                                 " && mount -o loop " + image + ' ' + memory_.at("volume");
    isMounted_ =
        memory_.isInMemory() && std::system(("(" + commands + ") 2>/dev/null").c_str()) == 0;
}

LoopVolume::~LoopVolume()
{
    if (isMounted_)
        ::umount2(memory_.at("volume").c_str(), MNT_DETACH);
}

} // namespace brisalon::tests
