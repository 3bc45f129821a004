#include <gtest/gtest.h>

#include <atomic>
#include <fstream>

#include "core/submission/edi_upload.h"
#include "core/util/file_io.h"
#include "platform/net/ftp_transfer.h"
#include "support/ftp_server.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

const std::filesystem::path kSample = test::sourceDir() / "tests/data/edi/OE1ABC-145.EDI";
constexpr const char* kSampleName = "OE1ABC_P_145MHz_20260502;20260503.EDI";

// A server home with the account "contest"/"secret", and the local files.
struct Fixture {
    test::TempDir local;
    test::TempDir home;
    test::FtpServer server{home.path(), "contest", "secret"};

    UploadServer account(std::string password = "secret") const {
        UploadServer s;
        s.host = "127.0.0.1";
        s.port = server.port();
        s.user = "contest";
        s.password = std::move(password);
        return s;
    }
    std::size_t filesAtServer() const {
        std::size_t n = 0;
        for (const auto& e : std::filesystem::recursive_directory_iterator(home.path()))
            n += e.is_regular_file();
        return n;
    }
};

} // namespace

TEST(FtpUpload, OutcomesAgainstARealServer) {
    Fixture f;
    ASSERT_GT(f.server.port(), 0) << "pyftpdlib did not start";
    test::writeFile(f.local / "noedi.EDI", "TName=x\r\nPBand=145 MHz\r\n");
    std::filesystem::create_directory(f.home / "entries");
    const std::string sample = test::readFile(kSample);

    const struct {
        const char* name;
        std::filesystem::path file;
        std::string password;
        int port; // 0: the server's
        std::string folder;
        UploadOutcome outcome;
        std::string arrivesAs; // below the server home; empty: nothing arrives
    } cases[] = {
        {"good upload", kSample, "secret", 0, "", UploadOutcome::Sent, kSampleName},
        {"into a folder", kSample, "secret", 0, "entries", UploadOutcome::Sent,
         std::string("entries/") + kSampleName},
        {"refused login", kSample, "wrong", 0, "", UploadOutcome::LoginRefused, ""},
        {"nothing listening", kSample, "secret", test::closedPort(), "", UploadOutcome::Unreachable,
         ""},
        {"no EDI file", f.local / "noedi.EDI", "secret", 0, "", UploadOutcome::NotEdi, ""},
        {"vanished file", f.local / "gone.EDI", "secret", 0, "", UploadOutcome::Unreadable, ""},
        {"missing folder", kSample, "secret", 0, "nowhere", UploadOutcome::Failed, ""},
    };
    CurlFtpTransfer transfer;
    const std::atomic<bool> cancel{false};
    for (const auto& c : cases) {
        for (const auto& e : std::filesystem::recursive_directory_iterator(f.home.path()))
            if (e.is_regular_file())
                std::filesystem::remove(e.path());
        UploadServer s = f.account(c.password);
        if (c.port)
            s.port = c.port;
        s.folder = c.folder;
        const UploadResult r = uploadEdi(transfer, s, c.file, cancel);
        EXPECT_EQ(r.outcome, c.outcome) << c.name << ": " << r.detail;
        if (c.arrivesAs.empty()) {
            EXPECT_EQ(f.filesAtServer(), 0u) << c.name;
        } else {
            EXPECT_EQ(f.filesAtServer(), 1u) << c.name;
            EXPECT_EQ(test::readFile(f.home / c.arrivesAs), sample) << c.name;
        }
    }
}

TEST(FtpUpload, BinaryBytesAndCancel) {
    Fixture f;
    ASSERT_GT(f.server.port(), 0) << "pyftpdlib did not start";
    // Every byte value and lone line ends arrive unchanged: no ASCII mode.
    std::string bytes = "PCall=DL0ABC\nPBand=2,3 GHz\r\nTDate=20260502;20260502\r\n";
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    test::writeFile(f.local / "binary.EDI", bytes);
    CurlFtpTransfer transfer;
    std::atomic<bool> cancel{false};
    const UploadResult r = uploadEdi(transfer, f.account(), f.local / "binary.EDI", cancel);
    ASSERT_EQ(r.outcome, UploadOutcome::Sent) << r.detail;
    EXPECT_EQ(r.remoteName, "DL0ABC_2,3GHz_20260502;20260502.EDI");
    EXPECT_EQ(test::readFile(f.home / r.remoteName), bytes);

    // A cancel stops the transfer itself, not only the steps before it.
    cancel = true;
    const TransferResult t = transfer.put(f.account(), kSample, "cancelled.EDI", cancel);
    EXPECT_EQ(t.outcome, TransferOutcome::Cancelled) << t.detail;
}

TEST(FtpUpload, ReachabilityIsATcpConnect) {
    Fixture f;
    ASSERT_GT(f.server.port(), 0) << "pyftpdlib did not start";
    EXPECT_TRUE(tcpReachable("127.0.0.1", f.server.port(), 2000));
    EXPECT_FALSE(tcpReachable("127.0.0.1", test::closedPort(), 2000));
    EXPECT_FALSE(tcpReachable("no-such-host.invalid", 21, 2000));
}
