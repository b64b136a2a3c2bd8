// cInifile: the one object through which the program reads and writes INI files. Set Path,
// Section and Key, then read or assign Value. It keeps no cache: every read and every write
// goes straight to the file through the profile engine (ProfileFile).
//
// Text is held as 8-bit bytes. In an 8-bit file it lands unchanged (UTF-8 from the user
// interface, Latin-1 from old files); a Unicode (UTF-16) file gets it as Windows-1252 text and
// hands back '?' for a character that code page cannot hold, as the platform's 8-bit profile
// functions do.
#pragma once

#include "storage/FormGeometry.h"

#include <cstdint>
#include <string>
#include <vector>

namespace zorvik {

class cInifile {
public:
    cInifile() = default;

    /// Result of the last write or delete: non-zero success, 0 failure.
    std::int32_t LastReturnCode() const { return lLastReturnCode; }
    bool Success() const { return lLastReturnCode != 0; }
    /// Records the outcome of a save that wrote its keys in memory and then replaced the file
    /// in one step (ProfileDocument), as writing the keys through Value would have.
    void setLastReturnCode(std::int32_t code) { lLastReturnCode = code; }

    /// Text a read gives when the key (or section) is missing; empty unless set.
    const std::string& Default() const { return sDefault; }
    void setDefault(const std::string& value) { sDefault = value; }

    const std::string& Path() const { return sPath; }
    void setPath(const std::string& value) { sPath = value; }

    const std::string& Key() const { return sKey; }
    void setKey(const std::string& value) { sKey = value; }

    const std::string& Section() const { return sSection; }
    void setSection(const std::string& value) { sSection = value; }

    /// The value of Key in Section, or Default; at most 254 characters (read through a
    /// 255-character buffer, never retried with a larger one). Leaves LastReturnCode alone.
    std::string Value() const;
    /// Removes every NUL from `value` (the caller's variable receives the cleaned text), then
    /// writes it to Key in Section, creating file, section and key as needed.
    void setValue(std::string& value);

    // The program never deletes, lists or enumerates keys and sections, nor stores a window's
    // place through this class; those members complete the INI object every part of the program
    // shares (a later window may need them) and their tests keep them exact.
    void DeleteKey();
    void DeleteSection();

    /// Every key name of Section, each followed by a NUL (an 8192-character buffer); Default
    /// when the section is missing.
    std::string INISection() const;
    /// Removes the whole of Section; `value` is ignored.
    void setINISection(const std::string& value);

    /// Every section name of the file, each followed by a NUL (an 8192-character buffer).
    std::string Sections() const;

    /// The key names of Section as a 1-based array: sKey[1] .. sKey[iCount], sKey[0] unused
    /// and empty. No keys: an empty vector and iCount 0. Empty key names are kept.
    void EnumerateCurrentSection(std::vector<std::string>& sKey, std::int32_t& iCount) const;
    /// The section names of the file in the same form; empty names are skipped.
    void EnumerateAllSections(std::vector<std::string>& sSections, std::int32_t& iCount) const;

    /// Writes "Maximised" ("1" or "0") and, for a normal window, "Left", "Top", "Width" and
    /// "Height" in twips into Section; nothing for a minimised window. Key is kept.
    void SaveFormPosition(FormGeometry& frmThis);
    /// Restores what SaveFormPosition wrote, keeping the window on the screen with a margin of
    /// 4 pixels. A width or height below lMinWidth / lMinHeight is raised to it, and the window
    /// is moved and sized only while both are at least the minimum after fitting it on the
    /// screen. Sets Default to "FAIL" (and leaves it so); Key is kept.
    void LoadFormPosition(FormGeometry& frmThis, std::int32_t lMinWidth = 0,
                          std::int32_t lMinHeight = 0);

    /// `sString` as a 32-bit whole number (rounded, halves to even), or lDefault when it does
    /// not convert (not numeric, overflow). '.' is the decimal separator on every machine.
    std::int32_t CLngDefault(const std::string& sString, std::int32_t lDefault = 0) const;

private:
    std::string readList(bool allSections) const;
    void write(bool withKey, const std::string* value);

    std::string sPath;
    std::string sKey;
    std::string sSection;
    std::string sDefault;
    std::int32_t lLastReturnCode = 0;
};

} // namespace zorvik
