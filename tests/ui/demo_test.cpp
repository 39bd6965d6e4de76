// zelvan-demo plays a recording fast through the real program and prints
// what the sign shows, "  35.8 s  TEXT", at the recording's times.

#include <signal.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "support/testdata.h"

namespace zelvan {
namespace {

// In order, each soon after its end of caption: at twenty times the pace a busy
// machine's quarter second is five, and in the news's order only with Broadcast
// EDM. The shell prints its id and becomes the demo, which Ctrl-C must end cleanly.
TEST(Demo, PrintsEachCaptionOfARecordingAsTheReflectorShowsItAtItsTime) {
    const std::string command = std::string("echo $$; exec timeout -k 10 -s INT 90 '") +
                                ZELVAN_DEMO_BINARY + "' --speed 20 '" +
                                testing::samplePath("news-2018-12-17-popon.scc") + "'";
    FILE* out = ::popen(command.c_str(), "r");
    ASSERT_NE(out, nullptr);
    char line[1024];
    ASSERT_NE(std::fgets(line, sizeof line, out), nullptr);
    const pid_t demo = std::stoi(line);
    const std::string last = "Ralph Nader / about Mulvaney,";
    std::string printed;
    while (printed.find(last) == std::string::npos && std::fgets(line, sizeof line, out))
        printed += line;
    ::kill(demo, SIGINT);
    while (std::fgets(line, sizeof line, out)) continue;  // what it prints on its way out
    EXPECT_EQ(::pclose(out), 0);

    EXPECT_NE(printed.find("Broadcast EDM (keep position) is on"), std::string::npos) << printed;
    double after = 0;
    for (auto [caption, shown] : {std::pair{"Yes, I'm supporting / Donald Trump.", 17.8},
                                  {"Those are the words / of Mick Mulvaney,", 28.4},
                                  {last.c_str(), 37.5}}) {
        const auto at = printed.find("s  " + std::string(caption));
        ASSERT_NE(at, std::string::npos) << caption << "\n" << printed;
        const double time = std::stod(printed.substr(printed.rfind('\n', at) + 1));
        EXPECT_GT(time, std::max(shown, after)) << caption;
        EXPECT_LT(time, shown + 25.0) << caption;
        after = time;
    }
}

}  // namespace
}  // namespace zelvan
