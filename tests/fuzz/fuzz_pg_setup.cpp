// The server set-up's readers and editors: any bytes as postgresql.conf,
// pg_hba.conf, the cluster listing and postmaster.pid. An edit made once is
// not made again.

#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz_support.h"
#include "platform/pg/pg_setup.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);

    const ConfEdit conf = listenEverywhere(bytes);
    const ConfEdit confAgain = listenEverywhere(conf.text);
    FUZZ_CHECK(!confAgain.changed && confAgain.text == conf.text,
               "listening was set a second time");

    const ConfEdit hba = allowNetwork(bytes, "contest", "contest", "192.168.1.0/24");
    const ConfEdit hbaAgain = allowNetwork(hba.text, "contest", "contest", "192.168.1.0/24");
    FUZZ_CHECK(!hbaAgain.changed && hbaAgain.text == hba.text,
               "the network was let in a second time");

    (void)listenRestartPending(bytes);
    for (const auto& c : parseClusters(bytes))
        FUZZ_CHECK(!c.version.empty(), "a cluster without a version");
    (void)parsePostmasterPid(bytes);
    return 0;
}
