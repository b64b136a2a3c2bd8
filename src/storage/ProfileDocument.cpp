// Key-by-key changes of a profile file in memory, then one atomic replacement.
#include "storage/ProfileDocument.h"

#include "storage/AtomicFile.h"
#include "storage/ProfileFile.h"
#include "storage/cInifile.h"

#include <algorithm>

namespace zorvik {

std::optional<ProfileDocument> ProfileDocument::read(const std::filesystem::path& path) {
    const AtomicFile::Contents contents = AtomicFile::read(path);
    if (contents.status == AtomicFile::Status::NotAFile)
        return std::nullopt;
    ProfileDocument document;
    if (contents.status == AtomicFile::Status::Read)
        document.text_ = ProfileText::decode(contents.bytes);
    return document;
}

void ProfileDocument::write(const cInifile& ini, std::string value) {
    value.erase(std::remove(value.begin(), value.end(), '\0'), value.end());
    changed_ = ProfileFile::edit(text_, ini.Section(), ini.Key(), value) || changed_;
}

bool ProfileDocument::commit(const std::filesystem::path& path) const {
    return AtomicFile::replace(path, text_.encode());
}

} // namespace zorvik
