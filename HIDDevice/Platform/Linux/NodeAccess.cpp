#include "HIDDevice/Platform/Linux/NodeAccess.h"

#include <algorithm>
#include <cerrno>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace {

constexpr uint32_t kAclXattrVersion = 2;

uint32_t le(std::span<const uint8_t> b, std::size_t at, int bytes)
{
    uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; --i)
        v = (v << 8) | b[at + i];
    return v;
}

std::string permString(unsigned perms)
{
    return {perms & 4 ? 'r' : '-', perms & 2 ? 'w' : '-', perms & 1 ? 'x' : '-'};
}

const AclEntry* find(const std::vector<AclEntry>& acl, AclEntry::Tag tag)
{
    const auto it = std::find_if(acl.begin(), acl.end(), [tag](const AclEntry& e) { return e.tag == tag; });
    return it == acl.end() ? nullptr : &*it;
}

bool inGroup(const AccessUser& user, uint32_t gid)
{
    return std::find(user.groups.begin(), user.groups.end(), gid) != user.groups.end();
}

}  // namespace

std::vector<AclEntry> parseAclXattr(std::span<const uint8_t> value)
{
    // Layout (little-endian):
    //   0  u32 version (2)
    //   4  entries, 8 bytes each: u16 tag, u16 perms, u32 id
    if (value.size() < 4 || (value.size() - 4) % 8 != 0 || le(value, 0, 4) != kAclXattrVersion)
        return {};
    std::vector<AclEntry> entries;
    for (std::size_t at = 4; at < value.size(); at += 8)
        entries.push_back({AclEntry::Tag(le(value, at, 2)), le(value, at + 4, 4), le(value, at + 2, 2) & 7u});
    return entries;
}

std::vector<AclEntry> readAccessAcl(const std::filesystem::path& node)
{
    uint8_t buffer[1024];
    const ssize_t n = ::getxattr(node.c_str(), "system.posix_acl_access", buffer, sizeof buffer);
    if (n <= 0)
        return {};  // ENODATA: no list beyond the mode; anything else: nothing we could read
    return parseAclXattr({buffer, std::size_t(n)});
}

std::optional<NodeOwnership> readOwnership(const std::filesystem::path& node)
{
    struct stat st {};
    if (::stat(node.c_str(), &st) != 0)
        return std::nullopt;
    return NodeOwnership{st.st_uid, st.st_gid, unsigned(st.st_mode & 07777)};
}

bool mayAccess(const NodeOwnership& node, const std::vector<AclEntry>& acl, const AccessUser& user, unsigned wanted)
{
    if (user.uid == 0)
        return true;  // root passes every read and write check
    const auto grants = [wanted](unsigned perms) { return (perms & wanted) == wanted; };
    if (user.uid == node.uid)
        return grants(node.mode >> 6);
    // With an access list, the mode's group bits are its mask.
    const AclEntry* mask = find(acl, AclEntry::Tag::Mask);
    const unsigned maskPerms = mask ? mask->perms : 7;
    for (const AclEntry& e : acl)
        if (e.tag == AclEntry::Tag::User && e.id == user.uid)
            return grants(e.perms & maskPerms);

    const AclEntry* groupObj = find(acl, AclEntry::Tag::GroupObj);
    bool member = false;
    if (inGroup(user, node.gid)) {
        member = true;
        if (grants((groupObj ? groupObj->perms : node.mode >> 3) & maskPerms))
            return true;
    }
    for (const AclEntry& e : acl) {
        if (e.tag == AclEntry::Tag::Group && inGroup(user, e.id)) {
            member = true;
            if (grants(e.perms & maskPerms))
                return true;
        }
    }
    return !member && grants(node.mode);
}

std::string describeAccess(const NodeOwnership& node, const std::vector<AclEntry>& acl)
{
    char mode[8];
    std::snprintf(mode, sizeof mode, "%04o", node.mode);
    std::string text = userName(node.uid) + ":" + groupName(node.gid) + " " + mode;
    std::string named;
    for (const AclEntry& e : acl) {
        if (e.tag != AclEntry::Tag::User && e.tag != AclEntry::Tag::Group)
            continue;
        named += named.empty() ? ", ACL " : " ";
        named += e.tag == AclEntry::Tag::User ? "user:" : "group:";
        named += e.tag == AclEntry::Tag::User ? userName(e.id) : groupName(e.id);
        named += ':';
        named += permString(e.perms);
    }
    return text + (named.empty() ? ", no ACL" : named);
}

std::string userName(uint32_t uid)
{
    passwd pw {};
    passwd* found = nullptr;
    char buffer[4096];
    if (::getpwuid_r(uid, &pw, buffer, sizeof buffer, &found) == 0 && found)
        return found->pw_name;
    return std::to_string(uid);
}

std::string groupName(uint32_t gid)
{
    group gr {};
    group* found = nullptr;
    char buffer[4096];
    if (::getgrgid_r(gid, &gr, buffer, sizeof buffer, &found) == 0 && found)
        return found->gr_name;
    return std::to_string(gid);
}
