// Records for the menu tests: a host named "Testron" with menu entries given per test.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include <lumivex/lumivex.h>

#include "shell/ks_main.h"

struct MenuTestRecord {
    KSConfigParameters record{};
    std::vector<KSMenuItem> items;
    std::vector<KSWebLink> links;

    explicit MenuTestRecord(std::vector<KSMenuItem> entries, std::vector<KSWebLink> webLinks = {})
        : items(std::move(entries)), links(std::move(webLinks))
    {
        strcpy(record.emulator_name, "Testron");
        strcpy(record.original_author, "Ada Original");
        strcpy(record.mac_author, "Mac Porter");
        strcpy(record.version, "2.5.1");
        record.framerate = 60;
        record.initial_width = 320;
        record.initial_height = 240;
        items.push_back(KSMenuItem{0, 0, 0, nullptr});
        links.push_back(KSWebLink{nullptr, nullptr});
        record.menuitems = items.data();
        record.weblinks = links.data();
    }
    void install() { gConfigParameters = &record; }
};

inline KSMenuItem Entry(uint32_t menu, uint32_t itemID, uint32_t code, const char *title = nullptr)
{
    return KSMenuItem{menu, itemID, (int32_t)code, title};
}

inline KSMenuItem AboutEntry()
{
    return Entry(KS_MENU_APPLICATION, 1, KS_STD_ABOUT);
}

// The text as a POSIX extended regular expression that matches it literally.
inline std::string LiteralPattern(const std::string &text)
{
    std::string pattern;
    for (char c : text) {
        if (strchr("\\^$.|?*+()[]{}", c)) pattern += '\\';
        pattern += c;
    }
    return pattern;
}
