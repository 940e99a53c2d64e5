#pragma once

#include <string>

namespace brisalon {

/// The home folder that the entry of the current user's account names; empty when it
/// names none. Asked for once: an account does not move while its programs run, and
/// asking may take a network. Any thread.
const std::string& accountHome();

} // namespace brisalon
