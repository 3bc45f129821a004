#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <string>
#include <thread>

#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

const std::string kCty = "/usr/share/hamradio-files/cty.dat";
const std::string kScp = "/usr/share/hamradio-files/MASTER.SCP";

bool haveHamradioFiles() {
    return std::filesystem::exists(kCty) && std::filesystem::exists(kScp);
}

int freePort() {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
    socklen_t len = sizeof a;
    ::getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    ::close(s);
    return ntohs(a.sin_port);
}

bool accepts(int port) {
    const int s = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<std::uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool ok = ::connect(s, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
    ::close(s);
    return ok;
}

// python3 -m http.server on 127.0.0.1, serving one folder, for the test's
// lifetime.
class HttpServer {
public:
    explicit HttpServer(const std::filesystem::path& folder) : port_(freePort()) {
        pid_ = ::fork();
        if (pid_ == 0) {
            const std::string port = std::to_string(port_);
            const std::string dir = folder.string();
            std::freopen("/dev/null", "w", stderr);
            ::execlp("python3", "python3", "-m", "http.server", "--bind", "127.0.0.1",
                     "--directory", dir.c_str(), port.c_str(), static_cast<char*>(nullptr));
            ::_exit(127);
        }
        for (int i = 0; i < 100 && !accepts(port_); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    ~HttpServer() {
        if (pid_ > 0) {
            ::kill(pid_, SIGTERM);
            ::waitpid(pid_, nullptr, 0);
        }
    }
    bool running() const { return accepts(port_); }
    std::string url(const std::string& file) const {
        return "http://127.0.0.1:" + std::to_string(port_) + "/" + file;
    }

private:
    int port_;
    pid_t pid_ = -1;
};

} // namespace

TEST(ReferenceTool, ImportCtyAndCountry) {
    if (!haveHamradioFiles())
        GTEST_SKIP() << "hamradio-files not installed";
    test::TempDir home;
    const std::string h = home.path().string();
    auto none = test::runTool({"--home", h, "country", "DL1ABC"});
    EXPECT_EQ(none.status, 2); // no list yet
    auto imp = test::runTool({"--home", h, "import-cty", kCty});
    ASSERT_EQ(imp.status, 0) << imp.err;
    EXPECT_NE(imp.out.find("Importieren fertig"), std::string::npos);
    struct Case {
        const char* call;
        const char* line;
    };
    const Case cases[] = {
        {"KH6XX", "Hawaii\t31\t61\tOC\tKH6\n"},
        {"K1XX", "United States of America\t5\t8\tNA\tK\n"},
        {"9M4SDX", "Spratly Islands\t26\t50\tAS\t1S\n"},
        {"ve8abc", "Canada\t1\t3\tNA\tVE\n"},
    };
    for (const auto& c : cases) {
        auto r = test::runTool({"--home", h, "country", c.call});
        EXPECT_EQ(r.status, 0) << c.call;
        EXPECT_EQ(r.out, c.line);
    }
    auto unknown = test::runTool({"--home", h, "country", "QQ1ABC"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("kann keinem Land zugewiesen werden"), std::string::npos);
    EXPECT_TRUE(unknown.out.empty());

    // A file that is no country list is refused and the list keeps working.
    test::writeFile(home / "bad.dat", "hello world, this is not CTY.DAT;\n");
    auto bad = test::runTool({"--home", h, "import-cty", (home / "bad.dat").string()});
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.err.find("Ungültige Länderdatei!"), std::string::npos);
    EXPECT_EQ(test::runTool({"--home", h, "country", "KH6XX"}).out, "Hawaii\t31\t61\tOC\tKH6\n");
    auto missing = test::runTool({"--home", h, "import-cty", (home / "nope.dat").string()});
    EXPECT_EQ(missing.status, 1);
}

TEST(ReferenceTool, DownloadCountryList) {
    if (!haveHamradioFiles())
        GTEST_SKIP() << "hamradio-files not installed";
    test::TempDir home, served;
    const std::string h = home.path().string();
    std::filesystem::copy_file(kCty, served / "cty.dat");
    test::writeFile(served / "junk.dat", "<html><body>Not here</body></html>\n");
    HttpServer server(served.path());
    ASSERT_TRUE(server.running());

    // The address comes from the settings file.
    test::writeFile(home / "OrvantaContest.INI",
                    "[QB-OPTION]\nCTYDownloadURL=" + server.url("cty.dat") + "\n");
    auto ok = test::runTool({"--home", h, "download-cty"});
    ASSERT_EQ(ok.status, 0) << ok.err;
    EXPECT_EQ(test::runTool({"--home", h, "country", "KH6XX"}).out, "Hawaii\t31\t61\tOC\tKH6\n");

    // A missing file on the server, a page that is no list and a closed port:
    // each refused, and the list stays.
    auto notFound = test::runTool({"--home", h, "download-cty", "--url", server.url("none.dat")});
    EXPECT_EQ(notFound.status, 2);
    EXPECT_NE(notFound.err.find("Beim Download der Länderliste ist ein Fehler aufgetreten!"),
              std::string::npos);
    auto junk = test::runTool({"--home", h, "download-cty", "--url", server.url("junk.dat")});
    EXPECT_EQ(junk.status, 2);
    EXPECT_NE(junk.err.find("Ungültige Länderdatei!"), std::string::npos);
    auto closed = test::runTool(
        {"--home", h, "download-cty", "--url", "http://127.0.0.1:" + std::to_string(freePort())});
    EXPECT_EQ(closed.status, 2);
    EXPECT_NE(closed.err.find("Beim Download der Länderliste"), std::string::npos);
    EXPECT_EQ(test::runTool({"--home", h, "country", "K1XX"}).out,
              "United States of America\t5\t8\tNA\tK\n");
}

TEST(ReferenceTool, CallDbImportAndLookup) {
    if (!haveHamradioFiles())
        GTEST_SKIP() << "hamradio-files not installed";
    test::TempDir home;
    const std::string h = home.path().string();
    auto empty = test::runTool({"--home", h, "lookup", "--call", "DL1"});
    EXPECT_EQ(empty.status, 0);
    EXPECT_EQ(empty.out, "# found=0\n");

    auto imp = test::runTool({"--home", h, "calldb-import", kScp});
    ASSERT_EQ(imp.status, 0) << imp.err;
    EXPECT_NE(imp.out.find("added=85456 "), std::string::npos);
    test::writeFile(home / "locs.txt", "DL1ABC JO31AB\nDL1ABD JO31CD\nDL2ABC JN58\n");
    auto locs = test::runTool({"--home", h, "calldb-import", (home / "locs.txt").string()});
    ASSERT_EQ(locs.status, 0) << locs.err;

    auto both = test::runTool({"--home", h, "lookup", "--call", "1AB", "--locator", "JO31"});
    ASSERT_EQ(both.status, 0);
    std::istringstream lines(both.out);
    std::vector<std::string> got;
    for (std::string l; std::getline(lines, l);)
        got.push_back(l);
    ASSERT_EQ(got.size(), 3u);
    EXPECT_EQ(got[0].substr(0, 19), "DL1ABC       JO31AB");
    EXPECT_EQ(got[1].substr(0, 19), "DL1ABD       JO31CD");
    EXPECT_EQ(got[2], "# found=2");

    auto capped = test::runTool({"--home", h, "lookup", "--call", "DL", "--max", "3"});
    std::istringstream cl(capped.out);
    int n = 0;
    std::string last;
    for (std::string l; std::getline(cl, l); ++n)
        last = l;
    EXPECT_EQ(n, 4);
    EXPECT_GT(std::stoi(last.substr(last.find('=') + 1)), 1000);

    test::writeFile(home / "bad.txt", "DL1ABC JO31AB\nthis is bad\n");
    auto bad = test::runTool({"--home", h, "calldb-import", (home / "bad.txt").string()});
    EXPECT_EQ(bad.status, 2);
    EXPECT_NE(bad.err.find("Ungültige Datei"), std::string::npos);
    EXPECT_NE(bad.err.find("line 2"), std::string::npos);
}
