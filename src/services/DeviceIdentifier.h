#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace navro {

using Id128 = std::array<std::uint8_t, 16>;

// Navro's own 128-bit application id: the key under which a machine's identifier is derived.
inline constexpr Id128 navroApplicationId = {0x6f, 0x1c, 0x4e, 0x2a, 0x93, 0xd5, 0x4b, 0x07,
                                             0xa8, 0x3e, 0x51, 0xc9, 0x0b, 0x7d, 0xe2, 0x64};

// The 32 lower-case hexadecimal digits of a machine-id file (with or without its final line
// break); nothing for anything else, including the all-zero id.
std::optional<Id128> parseMachineId(std::string_view text);

// The identifier of this machine for one application, derived as systemd derives
// application-specific machine ids: HMAC-SHA256 keyed by the machine id over the application id,
// its first 16 bytes made a version-4 UUID. Another application gets an unrelated value, and the
// machine id cannot be recovered from it.
Id128 applicationSpecificId(const Id128& machineId, const Id128& applicationId);

// Upper-case canonical form: "6F1C4E2A-93D5-4B07-A83E-51C90B7DE264".
std::string uuidText(const Id128& id);

// Navro's identifier of this machine from the first readable machine-id file of `files`, or
// nothing (the reason is logged once) when none holds a machine id.
std::optional<std::string> deviceIdentifier(const std::array<std::filesystem::path, 2>& files,
                                            const Id128& applicationId = navroApplicationId);

// Where systemd and D-Bus keep the machine id.
inline const std::array<std::filesystem::path, 2> machineIdFiles = {"/etc/machine-id",
                                                                    "/var/lib/dbus/machine-id"};

} // namespace navro
