#include "support/datafiles.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <vector>

namespace zelvan {

namespace fs = std::filesystem;

namespace {

bool isFile(const fs::path& p) {
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// The text of a page without its tags, entities left as they are.
std::string stripTags(const std::string& html) {
    std::string out;
    bool inTag = false;
    for (char c : html) {
        if (c == '<') inTag = true;
        if (!inTag) out += c;
        if (c == '>') {
            inTag = false;
            out += ' ';
        }
    }
    return out;
}

std::string titleOf(const std::string& html, const std::string& fallback) {
    const std::string l = lower(html);
    const std::size_t open = l.find("<title>");
    if (open == std::string::npos) return fallback;
    const std::size_t close = l.find("</title>", open);
    if (close == std::string::npos) return fallback;
    std::string t = html.substr(open + 7, close - open - 7);
    return t.find_first_not_of(" \t\r\n") == std::string::npos ? fallback : t;
}

std::string escapeHtml(const std::string& s) {
    std::string out;
    for (char c : s) {
        if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '&')
            out += "&amp;";
        else if (c == '"')
            out += "&quot;";
        else
            out += c;
    }
    return out;
}

std::string fileUrl(const fs::path& p) {
    std::string out = "file://";
    for (unsigned char c : p.string()) {
        if (std::isalnum(c) ||
            std::string_view("/-._~").find(static_cast<char>(c)) != std::string_view::npos) {
            out += static_cast<char>(c);
        } else {
            static const char* hex = "0123456789ABCDEF";
            out += '%';
            out += hex[c >> 4];
            out += hex[c & 15];
        }
    }
    return out;
}

}  // namespace

std::string findHelpIndex(const std::string& programDir) {
    const fs::path dir(programDir);
    for (const fs::path& folder : {dir / "HelpFiles", dir / kInstalledDataDir / "HelpFiles"})
        for (const char* name : {"index.htm", "Index.htm"})
            if (isFile(folder / name)) return (folder / name).lexically_normal().string();
    return (dir / "HelpFiles" / "index.htm").string();
}

std::string findAnsiReference(const std::string& currentDir, const std::string& programDir) {
    const fs::path here = fs::path(currentDir) / "ansi.rtf";
    for (const fs::path& p : {here, fs::path(programDir) / "ansi.rtf",
                              fs::path(programDir) / kInstalledDataDir / "ansi.rtf"})
        if (isFile(p)) return p.lexically_normal().string();
    return here.string();
}

std::optional<std::string> readWholeFile(const std::string& path, std::size_t limit) {
    if (!isFile(path)) return std::nullopt;
    std::error_code ec;
    const auto size = fs::file_size(path, ec);
    if (ec || size > limit) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::string data(static_cast<std::size_t>(size), '\0');
    in.read(data.data(), static_cast<std::streamsize>(size));
    data.resize(static_cast<std::size_t>(in.gcount()));
    return data;
}

std::string helpSearchPage(const std::string& folder, const std::string& word) {
    std::vector<fs::path> pages;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(folder, ec)) {
        const std::string ext = lower(entry.path().extension().string());
        if ((ext == ".htm" || ext == ".html") && isFile(entry.path()))
            pages.push_back(entry.path());
    }
    std::sort(pages.begin(), pages.end());

    const std::string needle = lower(word);
    std::string list;
    for (const fs::path& p : pages) {
        const auto html = readWholeFile(p.string(), 1024 * 1024);
        if (!html || needle.empty() || lower(stripTags(*html)).find(needle) == std::string::npos)
            continue;
        list += "<li><a href=\"" + escapeHtml(fileUrl(p)) + "\">" +
                escapeHtml(titleOf(*html, p.filename().string())) + "</a></li>";
    }
    std::string page = "<html><head><title>Search: " + escapeHtml(word) +
                       "</title></head><body><h2>Help pages with \"" + escapeHtml(word) + "\"</h2>";
    page += list.empty() ? "<p>No help page holds this word.</p>" : "<ul>" + list + "</ul>";
    return page + "</body></html>";
}

}  // namespace zelvan
