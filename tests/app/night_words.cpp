// What a night's terminal and log tell, against what was heard.
#include "app/night_judge.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

namespace velorn::test {

namespace {

constexpr std::string_view head = " lade Datei von:  ";
constexpr std::string_view ending = " Ende automatische Datenabholung  ";

struct Section {
    std::string name;
    std::string text;
};

// What stands behind each site's name.
std::vector<Section> sections_of(std::string_view text) {
    std::vector<Section> sections;
    for (std::size_t at = text.find(head); at != std::string_view::npos;) {
        at += head.size();
        const std::size_t line_end = text.find("\r\n", at);
        const std::size_t next = text.find(head, at);
        const std::size_t stop = std::min({next, text.find(ending, at), text.size()});
        const std::size_t name_end = std::min(line_end, stop);
        sections.push_back({std::string(text.substr(at, name_end - at)),
                            std::string(text.substr(name_end, stop - name_end))});
        at = next;
    }
    return sections;
}

int count_of(std::string_view text, std::string_view what) {
    int count = 0;
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string_view::npos; at += what.size()) ++count;
    return count;
}

// "Wärmewerk 07", cp1252.
std::string name_of(std::size_t site) {
    char text[16];
    (void)std::snprintf(text, sizeof text, "W\xE4rmewerk %02zu", site + 1);
    return text;
}

std::string done(const HeardSite& heard) { return " FERTIG! " + std::to_string(heard.sets.size()) + ' '; }

void judge_section(const NightSite& planned, const HeardSite& heard, const std::string& text, bool cut_off,
                   const std::string& who, std::vector<std::string>& complaints) {
    const auto told = [&](std::string_view what) { return count_of(text, what); };
    const auto expect = [&](std::string_view what, int times) {
        if (told(what) != times && !(cut_off && told(what) < times))
            complaints.push_back(who + " \"" + std::string(what) + "\" is told " +
                                 std::to_string(told(what)) + " times instead of " + std::to_string(times));
    };
    const bool asked = planned.has_archive();
    const bool began = heard.reached; // though the far end may have left before it was asked
    if (heard.downloads > 1) complaints.push_back(who + " more than one download began");
    expect(" DATEI EXISTIERT NICHT!!!", asked ? 0 : 1);
    expect(" Anwahl:  ", asked ? 1 : 0);
    expect(" KEIN CONNECT", asked && !began ? 1 : 0);
    // It is told two seconds before it is heard on the line.
    if (!cut_off) expect(" starte Download", began ? 1 : 0);
    expect(" FERTIG! ", heard.complete ? 1 : 0);
    expect(" ABBRUCH (Timeout)", began && !heard.complete ? 1 : 0);
    expect(done(heard), heard.complete ? 1 : 0);
    expect("!!!!!!!!!! neue", 0);
}

void judge_sections(const NightPlan& plan, const Watch& watch, const HeardNight& heard, std::string_view text,
                    const std::string& where, std::vector<std::string>& complaints) {
    const std::vector<Section> sections = sections_of(text);
    std::size_t next = 0;
    for (std::size_t i = 0; i < plan.sites.size(); ++i) {
        const NightSite& planned = plan.sites[i];
        if (!planned.takes_part) {
            if (heard.sites[i].called > 0) complaints.push_back(name_of(i) + " takes no part and was called");
            continue;
        }
        if (next >= sections.size()) {
            if (watch.end != Watch::End::killed)
                complaints.push_back(where + ": " + name_of(i) + " is missing");
            continue;
        }
        const Section& section = sections[next++];
        const bool cut_off = watch.end == Watch::End::killed && next == sections.size();
        if (section.name != name_of(i) && !cut_off)
            complaints.push_back(where + ": " + section.name + " instead of " + name_of(i));
        // On the terminal a download without data is marked.
        std::string plain = section.text;
        if (heard.sites[i].sets.size() < 2) {
            if (const std::size_t at = plain.find("!!!!!!!!!! neue"); at != std::string::npos)
                plain.replace(at, 10, "");
        }
        judge_section(planned, heard.sites[i], plain, cut_off, where + ": " + name_of(i) + ":", complaints);
    }
    if (next < sections.size())
        complaints.push_back(where + ": " + sections[next].name + " came once too often");
}

std::string summary_of(const NightPlan& plan, const HeardNight& heard) {
    int asked = 0, reached = 0, complete = 0;
    std::size_t values = 0;
    for (std::size_t i = 0; i < plan.sites.size(); ++i) {
        const HeardSite& site = heard.sites[i];
        asked += plan.sites[i].takes_part ? 1 : 0;
        reached += site.reached ? 1 : 0;
        complete += site.complete ? 1 : 0;
        values += site.sets.size();
    }
    return "Anlagen: " + std::to_string(asked) + ", erreicht: " + std::to_string(reached) +
           ", fehlgeschlagen: " + std::to_string(asked - complete) +
           ", gespeicherte 1/4h-Daten: " + std::to_string(values) + "\r\n";
}

} // namespace

void judge_words(const NightPlan& plan, const Watch& watch, const HeardNight& heard,
                 std::vector<std::string>& complaints) {
    const auto both = [&](std::string_view what) {
        for (const auto& [text, where] : {std::pair{&watch.terminal, "terminal"}, {&watch.log, "log"}}) {
            if (text->find(what) == std::string::npos)
                complaints.push_back(std::string(where) + ": no \"" + std::string(what) + '"');
        }
    };
    if (watch.end == Watch::End::endless) complaints.push_back("the run never ends");
    if (watch.kind == Watch::Kind::continuation) {
        for (std::size_t i = 0; i < heard.sites.size(); ++i) {
            if (heard.sites[i].called > 0)
                complaints.push_back(name_of(i) + " was called after the crash without an order");
        }
        if (watch.terminal.find("Fortsetzung autom. Datenabholung (Abbrechen mit Velorn beenden) ...") ==
            std::string::npos)
            complaints.push_back("terminal: the interrupted run isn't told");
        if (watch.log.find("\r\nAutomatischer Start ") == std::string::npos)
            complaints.push_back("log: the interrupted run isn't told");
        both(ending);
        return;
    }
    if (watch.end == Watch::End::finished) {
        both(" Start automatische Datenabholung  ");
        both(ending);
        const std::string summary = summary_of(plan, heard);
        if (watch.terminal.find(summary) == std::string::npos) {
            const std::size_t told = watch.terminal.find("Anlagen: ");
            complaints.push_back("terminal: the numbers are " + summary + " and it tells " +
                                 (told == std::string::npos ? "none" : watch.terminal.substr(told, 90)));
        }
    }
    judge_sections(plan, watch, heard, watch.terminal, "terminal", complaints);
    judge_sections(plan, watch, heard, watch.log, "log", complaints);
}

} // namespace velorn::test
