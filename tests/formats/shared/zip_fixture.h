#pragma once
#include "bytes.h"

#include <map>
#include <string>
#include <zlib.h>

namespace vldv::formats {

/// An archive of these members, stored.
inline std::string stored_zip(const std::map<std::string, std::string>& members)
{
    std::string body, directory;
    for (const auto& [name, content] : members) {
        const auto sum = crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size()));
        const std::string common = le16(10) + le16(0) + le16(0) + le16(0) + le16(0x21) + le32(sum) +
                                   le32(content.size()) + le32(content.size()) + le16(name.size()) + le16(0);
        directory += "PK\1\2" + le16(10) + common + le16(0) + le16(0) + le16(0) + le32(0) + le32(body.size()) + name;
        body += "PK\3\4" + common + name + content;
    }
    return body + directory + "PK\5\6" + le16(0) + le16(0) + le16(members.size()) + le16(members.size()) +
           le32(directory.size()) + le32(body.size()) + le16(0);
}

} // namespace vldv::formats
