// Puts a German locale in force for a test (the system's own, or one made with localedef in a
// scratch folder) and the "C" locale back afterwards.
#pragma once

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <locale>
#include <random>
#include <string>

namespace zorvik::testing {

class GermanLocale {
public:
    GermanLocale() {
        if (use())
            return;
        m_folder = std::filesystem::temp_directory_path() /
                   ("zorvik-test-locales-" + std::to_string(std::random_device{}()));
        std::filesystem::create_directories(m_folder);
        const std::string command = "localedef -i de_DE -f UTF-8 '" +
                                    (m_folder / "de_DE.UTF-8").string() + "' >/dev/null 2>&1";
        if (std::system(command.c_str()) == 0) {
            ::setenv("LOCPATH", m_folder.c_str(), 1);
            if (use())
                return;
            ::unsetenv("LOCPATH");
        }
        m_missing = true;
    }
    ~GermanLocale() {
        std::setlocale(LC_ALL, "C");
        std::locale::global(std::locale::classic());
        if (!m_folder.empty()) {
            ::unsetenv("LOCPATH");
            std::error_code ec;
            std::filesystem::remove_all(m_folder, ec);
        }
    }
    GermanLocale(const GermanLocale&) = delete;
    GermanLocale& operator=(const GermanLocale&) = delete;

    /// False when no German locale could be had (the test then fails: the set-up installs one).
    bool available() const { return !m_missing; }

private:
    static bool use() {
        if (!std::setlocale(LC_ALL, "de_DE.UTF-8"))
            return false;
        std::locale::global(std::locale("de_DE.UTF-8"));
        return true;
    }

    bool m_missing = false;
    std::filesystem::path m_folder;
};

} // namespace zorvik::testing
