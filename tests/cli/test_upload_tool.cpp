#include <gtest/gtest.h>

#include <filesystem>

#include "support/ftp_server.h"
#include "support/run_tool.h"
#include "support/temp_dir.h"

using namespace orv;

// `upload FILE.EDI` against a real FTP server on 127.0.0.1: the settings of
// the data folder, the options over them, the stored password, and the exit
// status of every refusal.
TEST(UploadTool, SendsAndRefuses) {
    test::TempDir home;
    test::TempDir server;
    test::FtpServer ftp(server.path(), "contest", "geheim");
    ASSERT_GT(ftp.port(), 0) << "pyftpdlib did not start";
    const std::string port = std::to_string(ftp.port());
    // The settings name a port where nothing listens; --port puts it right.
    test::writeFile(home / "OrvantaContest.INI",
                    "[EDIUpload]\nHost=127.0.0.1\nPort=" + std::to_string(test::closedPort()) +
                        "\nUser=contest\n");
    test::writeFile(home / "pw", "geheim\n");
    test::writeFile(home / "wrong", "falsch\r\n");
    test::writeFile(home / "noedi.EDI", "[REG1TEST;1]\r\nPCall=OE1ABC\r\n");
    std::filesystem::create_directory(server / "2026");
    const std::string sample = (test::sourceDir() / "tests/data/edi/OE1ABC-145.EDI").string();
    const std::string name = "OE1ABC_P_145MHz_20260502;20260503.EDI";
    const std::string pw = (home / "pw").string();

    struct Case {
        std::vector<std::string> args;
        int status;
        std::string out;       // stdout
        std::string errStarts; // the start of stderr
        std::string arrivesAs; // below the server home
    };
    const std::vector<Case> cases = {
        {{sample, "--port", port, "--password-file", pw},
         0,
         name + "\n",
         "Upload erfolgreich abgeschlossen!\nHochgeladen als " + name,
         name},
        {{sample, "--port", port, "--password-file", pw, "--folder", "2026"},
         0,
         name + "\n",
         "",
         "2026/" + name},
        {{sample, "--port", port, "--password-file", (home / "wrong").string()},
         1,
         "",
         "Anmeldung am Server abgelehnt:\ncontest: ",
         ""},
        {{sample, "--port", port, "--user", "other", "--password-file", pw},
         1,
         "",
         "Anmeldung am Server abgelehnt:\nother: ",
         ""},
        {{sample, "--password-file", pw}, 1, "", "Server nicht erreichbar!\n127.0.0.1:", ""},
        {{(home / "noedi.EDI").string(), "--port", port}, 2, "", "Ungültige EDI-Datei!\n", ""},
        {{(home / "gone.EDI").string(), "--port", port},
         1,
         "",
         "Die Datei kann nicht gelesen werden:\n",
         ""},
        {{sample, "--port", "0"}, 2, "", "", ""},
        {{sample, "--host", " ", "--port", port}, 2, "", "Kein Contest-Server eingestellt", ""},
    };
    for (const Case& c : cases) {
        for (const auto& e : std::filesystem::recursive_directory_iterator(server.path()))
            if (e.is_regular_file())
                std::filesystem::remove(e.path());
        std::vector<std::string> args{"upload"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const auto r = test::runToolAt(home.path(), args);
        const std::string what = c.args[0] + " " + c.args.back();
        EXPECT_EQ(r.status, c.status) << what << "\n" << r.err;
        EXPECT_EQ(r.out, c.out) << what;
        EXPECT_EQ(r.err.rfind(c.errStarts, 0), 0u) << what << "\n" << r.err;
        std::size_t files = 0;
        for (const auto& e : std::filesystem::recursive_directory_iterator(server.path()))
            files += e.is_regular_file();
        EXPECT_EQ(files, c.arrivesAs.empty() ? 0u : 1u) << what;
        if (!c.arrivesAs.empty()) {
            EXPECT_EQ(test::readFile(server / c.arrivesAs), test::readFile(sample)) << what;
        }
    }

    // Without --password-file the stored password of the account is taken
    // (here from the file a data folder without keyring keeps).
    test::writeFile(home / "Upload.pwd", "contest@127.0.0.1\tgeheim\n");
    const auto stored = test::runToolAt(home.path(), {"upload", sample, "--port", port});
    EXPECT_EQ(stored.status, 0) << stored.err;
    EXPECT_TRUE(std::filesystem::exists(server / name));
}
