// "Fremde QBDat importieren": any bytes as the foreign database file,
// imported into a call database with rows. A refused file leaves the
// database's files as they were, and the foreign file is only read.

#include <cstddef>
#include <cstdint>
#include <string>

#include "call_db_fixture.h"
#include "core/reference/call_db.h"
#include "fuzz_support.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto dir = fuzz::workDir() / "calldb";
    const auto db = fuzz::freshCallDb(dir);
    const auto foreignDir = fuzz::workDir() / "foreign";
    std::filesystem::remove_all(foreignDir);
    std::filesystem::create_directories(foreignDir);
    const auto foreign = foreignDir / "Other.sqlite";
    fuzz::writeBytes(foreign, bytes);

    const std::string before = fuzz::folderBytes(dir);
    bool refused = false;
    {
        CallDbStore store(db);
        const std::int64_t rowsBefore = store.count();
        const auto r = importForeignCallDb(store, foreign);
        refused = !r.ok();
        if (r.ok()) {
            FUZZ_CHECK(store.count() == rowsBefore + r->added, "rows added differ from the count");
            for (const CallRecord& rec : store.all())
                FUZZ_CHECK(validateCallRecord(rec).ok(), "the import stored a row it cannot hold");
        } else {
            FUZZ_CHECK(r.failure().text == 258, "a refusal without IText(258)");
        }
    }
    if (refused)
        FUZZ_CHECK(fuzz::folderBytes(dir) == before, "a refused foreign file changed the database");
    FUZZ_CHECK(fuzz::bytesOf(foreign) == bytes, "the foreign file was written to");
    return 0;
}
