#include "platform/pg/pg_schema.h"

namespace orv::pg_detail {

// orv_push takes the contest's lock from the change number to the commit, so
// that change numbers become visible in their order and a reader that moved
// past a number never sees a smaller one arrive later.
// Outcome 0 stored, 1 held already, 2 conflict.
//
// Serials: `orv_series` holds each band's next number of the station,
// `orv_hold` the number each position has been given for its next QSO on a
// band. A position keeps its number until it knows a QSO of the band with
// that number or a higher one (it logged it, or another position did while
// apart); then it is given the next free one. Numbers a position left
// unused when it changed band stay its own and come back when it returns,
// unless the band moved past them.
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
CREATE TABLE IF NOT EXISTS orv_series (
    contest text NOT NULL,
    band integer NOT NULL,
    next_nr bigint NOT NULL,
    PRIMARY KEY (contest, band));
CREATE TABLE IF NOT EXISTS orv_hold (
    contest text NOT NULL,
    band integer NOT NULL,
    position text NOT NULL,
    nr bigint NOT NULL,
    PRIMARY KEY (contest, band, position));
CREATE OR REPLACE FUNCTION orv_nr(f text[]) RETURNS bigint AS $$
    SELECT CASE WHEN f[6] ~ '^[0-9]{1,18}$' THEN f[6]::bigint ELSE 0 END
$$ LANGUAGE sql IMMUTABLE;
CREATE OR REPLACE FUNCTION orv_hold_serial(c text, b integer, p text, known bigint,
                                           OUT nr bigint) AS $$
BEGIN
    PERFORM pg_advisory_xact_lock(hashtext('orv_share:' || c));
    SELECT h.nr INTO nr FROM orv_hold h WHERE h.contest = c AND h.band = b AND h.position = p;
    IF FOUND AND nr > known THEN
        RETURN;
    END IF;
    SELECT greatest(s.next_nr, known + 1) INTO nr FROM orv_series s
        WHERE s.contest = c AND s.band = b;
    IF nr IS NULL THEN
        nr := known + 1;
    END IF;
    INSERT INTO orv_series VALUES (c, b, nr + 1)
        ON CONFLICT (contest, band) DO UPDATE SET next_nr = EXCLUDED.next_nr;
    INSERT INTO orv_hold VALUES (c, b, p, nr)
        ON CONFLICT (contest, band, position) DO UPDATE SET nr = EXCLUDED.nr;
END $$ LANGUAGE plpgsql;
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
        -- A number given (offline, or typed) moves the band's series past it.
        INSERT INTO orv_series VALUES (c, b, orv_nr(f) + 1)
            ON CONFLICT (contest, band) DO UPDATE
            SET next_nr = greatest(orv_series.next_nr, EXCLUDED.next_nr);
        PERFORM pg_notify('orv_share', c);
    END IF;
END $$ LANGUAGE plpgsql;
)SQL";

} // namespace orv::pg_detail
