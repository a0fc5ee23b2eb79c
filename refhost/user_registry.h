// The simulated operating-system user: the current user's registry hive (only what the
// library deletes) and the network user name, behind host/os.h's
// Loom::OS::deleteUserRegistryKey and Loom::OS::networkUserName.
//
// Tests and the scenario runner set the state (`registry user "KEY" present`,
// `registryfail`, `netuser "name"`), read it back, and reset it to the defaults before
// each scenario: no keys, no pending failure, no network user name (so the name lookup
// fails, as WNetGetUserW does for a user without a network logon).
//
// Key paths are relative to HKEY_CURRENT_USER, with '\' between names, and compared
// without regard to ASCII letter case, as the registry does. A key exists when it was set
// present or lies below one that was (creating a key creates its parents). As
// RegDeleteKeyW, deleting fails for a missing key and for a key that still has subkeys.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace refhost {

// Back to the defaults above; the deletion log is emptied too.
void resetUserSimulation();

// Creates (with its parents) or deletes (with its subkeys) the key.
void setUserRegistryKey(std::u16string_view keyPath, bool present);
bool userRegistryKeyExists(std::u16string_view keyPath);
// The keys that were set present and still exist, in the spelling they were set with.
std::vector<std::u16string> userRegistryKeys();
// The next deletion fails whatever the key's state, and leaves the key as it is.
void failNextUserRegistryDeletion();
// Every key path the library asked to delete, in order, failed deletions included.
const std::vector<std::u16string>& userRegistryDeletions();

// The name Loom::OS::networkUserName reports; clearNetworkUserName makes it fail.
void setNetworkUserName(std::u16string_view name);
void clearNetworkUserName();

}  // namespace refhost
