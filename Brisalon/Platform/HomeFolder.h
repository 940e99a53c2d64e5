#pragma once

#include "BrisalonCore/FileURL.h"

namespace brisalon {

/// The current user's home folder: what $HOME says, else the account's entry, else
/// "/". Any thread that does not run beside a change of the environment.
FileURL homeFolder();

} // namespace brisalon
