#pragma once

// The tables and the push routine of the shared log on the server.

namespace orv::pg_detail {

// Made once per database, under an advisory lock so that positions joining
// at the same moment do not race. Version 1: the table orv_share_version,
// the QSOs orv_qso (the 18 QSO fields as a text array in the order of a band
// table), the station of each contest orv_contest, the positions orv_position, the change numbers
// orv_change_no and orv_push.
extern const char* const kCreateSchema;

} // namespace orv::pg_detail
