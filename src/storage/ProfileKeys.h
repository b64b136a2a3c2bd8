// Reading the keys of a profile file through cInifile, the same way for the settings file and
// the Waveform Data File.
#pragma once

#include "storage/VbConvert.h"
#include "storage/cInifile.h"

#include <cstdint>
#include <exception>
#include <string>

namespace zorvik {

/// Reads Key `key` of the section `ini` is set to; `apply` runs only for a value that is not
/// empty. What `apply` throws goes on to the caller (a file load ends there).
template <typename Apply> void readKey(cInifile& ini, const char* key, Apply apply) {
    ini.setKey(key);
    const std::string text = ini.Value();
    if (!text.empty())
        apply(text);
}

/// readKey for a reader that goes on with the next key: an error while converting or applying
/// the value skips this key only.
template <typename Apply> void readKeyOrSkip(cInifile& ini, const char* key, Apply apply) {
    try {
        readKey(ini, key, apply);
    } catch (const std::exception&) {
    }
}

/// A whole number as the files keep knob positions: the number the text starts with, rounded
/// (halves to even).
inline std::int32_t wholeNumber(const std::string& text) {
    return VbConvert::roundToLong(VbConvert::leadingNumber(text));
}

} // namespace zorvik
