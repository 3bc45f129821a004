// The call list import (MASTER.SCP and "CALL LOCATOR" lists): any bytes as
// the list, imported into a call database with rows. A refused list leaves
// the database's files as they were; an accepted one adds at most a row per
// line.

#include <cstddef>
#include <cstdint>
#include <string>

#include "call_db_fixture.h"
#include "core/reference/call_db.h"
#include "fuzz_support.h"

using namespace orv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto parsed = parseCallList(bytes);

    const auto dir = fuzz::workDir() / "calldb";
    const auto db = fuzz::freshCallDb(dir);
    const std::string before = fuzz::folderBytes(dir);
    std::int64_t rowsBefore = 0;
    std::int64_t rowsAfter = 0;
    bool refused = false;
    {
        CallDbStore store(db);
        rowsBefore = store.count();
        const auto r = importCallList(store, bytes);
        FUZZ_CHECK(r.ok() == parsed.ok(), "the import and the parser disagree");
        refused = !r.ok();
        if (r.ok()) {
            rowsAfter = store.count();
            FUZZ_CHECK(rowsAfter == rowsBefore + r->added, "rows added differ from the count");
            FUZZ_CHECK(static_cast<std::size_t>(r->added + r->completed + r->known) ==
                           parsed->size(),
                       "lines counted differ from lines parsed");
            for (const CallRecord& rec : store.all())
                FUZZ_CHECK(validateCallRecord(rec).ok(), "the import stored a row it cannot hold");
        } else {
            FUZZ_CHECK(r.failure().text == 258, "a refusal without IText(258)");
        }
    }
    if (refused)
        FUZZ_CHECK(fuzz::folderBytes(dir) == before, "a refused call list changed the database");
    return 0;
}
