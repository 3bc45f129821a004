#include "platform/pg/pg_schema.h"

namespace orv::pg_detail {

// orv_push takes the contest's lock from the change number to the commit, so
// that change numbers become visible in their order and a reader that moved
// past a number never sees a smaller one arrive later.
// Outcome 0 stored, 1 held already, 2 conflict.
const char* const kCreateSchema = R"SQL(
CREATE SEQUENCE IF NOT EXISTS orv_change_no;
CREATE TABLE IF NOT EXISTS orv_qso (
    uid text PRIMARY KEY,
    contest text NOT NULL,
    band integer NOT NULL,
    position text NOT NULL,
    rev bigint NOT NULL,
    change_no bigint NOT NULL,
    fields text[] NOT NULL);
CREATE INDEX IF NOT EXISTS orv_qso_change ON orv_qso (contest, change_no);
CREATE TABLE IF NOT EXISTS orv_contest (
    contest text PRIMARY KEY,
    mycall text NOT NULL,
    mylocator text NOT NULL,
    contname text NOT NULL,
    weights text NOT NULL);
CREATE TABLE IF NOT EXISTS orv_position (
    contest text NOT NULL,
    position text NOT NULL,
    band integer NOT NULL,
    opcall text NOT NULL,
    last_call text NOT NULL,
    last_time text NOT NULL,
    queued bigint NOT NULL,
    seen timestamptz NOT NULL,
    PRIMARY KEY (contest, position));
CREATE OR REPLACE FUNCTION orv_push(c text, u text, b integer, p text, base bigint, r bigint,
                                    f text[], OUT outcome integer) AS $$
DECLARE
    held orv_qso%ROWTYPE;
BEGIN
    PERFORM pg_advisory_xact_lock(hashtext('orv_share:' || c));
    SELECT * INTO held FROM orv_qso WHERE uid = u;
    IF NOT FOUND THEN
        INSERT INTO orv_qso VALUES (u, c, b, p, r, nextval('orv_change_no'), f);
        outcome := 0;
    ELSIF base = 0 OR (held.rev = r AND held.fields = f) THEN
        outcome := 1;
    ELSIF held.rev = base THEN
        UPDATE orv_qso SET rev = r, fields = f, change_no = nextval('orv_change_no')
            WHERE uid = u;
        outcome := 0;
    ELSE
        outcome := 2;
    END IF;
    IF outcome = 0 THEN
        PERFORM pg_notify('orv_share', c);
    END IF;
END $$ LANGUAGE plpgsql;
)SQL";

} // namespace orv::pg_detail
