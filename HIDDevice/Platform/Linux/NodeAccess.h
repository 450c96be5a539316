#pragma once
// Who may open a device node, judged the way the kernel judges it: the
// node's owner, group and mode plus its POSIX access list, for a given user.
// The doctor asks this instead of access(2), so its answer holds for the user
// it speaks of even when it runs as root, and it never opens the node.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct AclEntry {
    // The tag values of the kernel's "system.posix_acl_access" attribute.
    enum class Tag : uint16_t { UserObj = 0x01, User = 0x02, GroupObj = 0x04, Group = 0x08, Mask = 0x10, Other = 0x20 };
    Tag tag = Tag::Other;
    uint32_t id = 0;     // the uid or gid of a User or Group entry
    unsigned perms = 0;  // 4 read, 2 write, 1 execute
};
using AclReader = std::function<std::vector<AclEntry>(const std::filesystem::path&)>;

struct NodeOwnership {
    uint32_t uid = 0;
    uint32_t gid = 0;
    unsigned mode = 0;  // the permission bits, e.g. 0660
};

struct AccessUser {
    uint32_t uid = 0;
    std::string name;
    std::vector<uint32_t> groups;  // every group, the primary one included
};

constexpr unsigned kMayRead = 4;
constexpr unsigned kMayWrite = 2;

// The entries of a "system.posix_acl_access" value (version 2, then 8 bytes
// per entry); empty when the value is malformed.
std::vector<AclEntry> parseAclXattr(std::span<const uint8_t> value);
// The node's access list as stored; empty when it has none beyond its mode.
std::vector<AclEntry> readAccessAcl(const std::filesystem::path& node);
std::optional<NodeOwnership> readOwnership(const std::filesystem::path& node);

// Whether `user` gets every permission in `wanted` (kMayRead | kMayWrite).
bool mayAccess(const NodeOwnership& node, const std::vector<AclEntry>& acl, const AccessUser& user, unsigned wanted);

// "root:plugdev 0660, ACL user:alice:rw-" for the doctor's lines.
std::string describeAccess(const NodeOwnership& node, const std::vector<AclEntry>& acl);

// The user and group names, or the number where the name is unknown.
std::string userName(uint32_t uid);
std::string groupName(uint32_t gid);
