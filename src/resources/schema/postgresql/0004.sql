-- Schema 4 of the database on a server: what the log window searches.

-- The numbers that the parties had when the record was made, where a callsign stands for them; direction is 1 for a record of what came
-- in, 2 for what went out. All are empty in records of older programs.
ALTER TABLE event ADD COLUMN from_number varchar(64);
ALTER TABLE event ADD COLUMN to_number varchar(64);
ALTER TABLE event ADD COLUMN direction smallint;
GRANT INSERT (from_number, to_number, direction) ON event TO {users};

-- The words of a text: what stands between anything else than letters and digits. Longer ones are cut, since nobody types them.
CREATE FUNCTION kyn_words(value text) RETURNS text[]
LANGUAGE sql IMMUTABLE STRICT PARALLEL SAFE
RETURN ARRAY(SELECT left(word, 64)
             FROM regexp_split_to_table(kyn_fold(value) COLLATE "und-x-icu", '[^[:alnum:]]+') AS word
             WHERE word <> '');

-- What a record is found by: the words of its parties and of its text, its kind, and the code of a status in the place of its text. The
-- last two begin with characters that no text has.
CREATE FUNCTION kyn_event_words(kind integer, content text, VARIADIC parties text[]) RETURNS text[]
LANGUAGE sql IMMUTABLE PARALLEL SAFE
RETURN CASE kind WHEN 1 THEN ARRAY[E'\uE001' || left(content, 64)] ELSE kyn_words(content) END
       || (E'\uE002' || kind) || kyn_words(array_to_string(parties, ' '));

-- An index of words behind the records: a console adds 128 of them at a time, once all are there, and never in the transaction that
-- stores one. What is not indexed yet is read.
CREATE TABLE event_block (
    block bigint PRIMARY KEY,
    first_time timestamptz(3) NOT NULL,
    last_time timestamptz(3) NOT NULL,
    words tsvector NOT NULL
);
CREATE INDEX i_event_words ON event_block USING gin (words) WITH (fastupdate = off);

-- A record may get its number before another one and be there after it. So all numbers up to seen_id are there only when no
-- transaction is left that ran when they were seen: those before seen_before. `wanted` is how many records are to be indexed.
CREATE TABLE event_mark (
    mark_id integer PRIMARY KEY,
    wanted bigint NOT NULL,
    seen_id bigint NOT NULL,
    seen_before xid8 NOT NULL,
    safe_id bigint NOT NULL
);
INSERT INTO event_mark VALUES (1, 0, 0, '0', 0);

CREATE FUNCTION kyn_index_events() RETURNS trigger
LANGUAGE plpgsql SECURITY DEFINER SET search_path = kyn, pg_temp AS $$
DECLARE
    first bigint;
BEGIN
    IF pg_snapshot_xmin(pg_current_snapshot()) >= OLD.seen_before THEN
        NEW.safe_id := OLD.seen_id;
        SELECT coalesce(max(event_id), 0) INTO NEW.seen_id FROM event;
        NEW.seen_before := pg_snapshot_xmax(pg_current_snapshot());
    END IF;
    SELECT coalesce(max(block) + 1, 0) * 128 INTO first FROM event_block;
    SELECT min(event_id) / 128 * 128 INTO first FROM event WHERE event_id >= first;
    INSERT INTO event_block (block, first_time, last_time, words)
    SELECT event_id / 128, min(time_stamp), max(time_stamp), array_to_tsvector(array_agg(DISTINCT word))
    FROM event, unnest(kyn_event_words(event_type, "desc", from_address, to_address, from_number, to_number)) AS word
    WHERE event_id >= first AND event_id < least(first + NEW.wanted, (NEW.safe_id + 1) / 128 * 128)
    GROUP BY event_id / 128;
    RETURN NEW;
END $$;
CREATE TRIGGER index_events BEFORE UPDATE ON event_mark
FOR EACH ROW EXECUTE FUNCTION kyn_index_events();

-- The words come as a file's index takes them. The index is always asked: the server takes reading every block for cheaper with common
-- words, since it does not count what unpacking their words costs.
CREATE FUNCTION kyn_word_blocks(sought text, since timestamptz, until timestamptz) RETURNS SETOF bigint
LANGUAGE plpgsql STABLE SET search_path = kyn, pg_temp SET enable_seqscan = off SET jit = off AS $$
BEGIN
    RETURN QUERY
    WITH hit AS MATERIALIZED (
        SELECT block, first_time, last_time
        FROM event_block
        WHERE words @@ replace(replace(replace(replace(sought, '"*', ''':*'), '"', ''''), ' AND ', ' & '), ' OR ', ' | ')::tsquery)
    SELECT block FROM hit WHERE last_time >= since AND first_time < until;
END $$;

REVOKE ALL ON ALL FUNCTIONS IN SCHEMA kyn FROM PUBLIC;
GRANT EXECUTE ON ALL FUNCTIONS IN SCHEMA kyn TO {users};
GRANT SELECT ON event_block, event_mark TO {users};
GRANT UPDATE (wanted) ON event_mark TO {users};

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('event_block', 'PrimaryKey', 1, 'block', false),
    ('event_mark', 'PrimaryKey', 1, 'mark_id', false);

{include event_queries.sql}

INSERT INTO stored_query (name, table_name, sql) VALUES
('index_events', NULL,
'UPDATE event_mark SET wanted = :most'),

('find_word_blocks_before', NULL,
'SELECT block FROM kyn_word_blocks(:words, :since, :until) AS block WHERE block < :bound ORDER BY block DESC LIMIT :most'),

('find_word_blocks_after', NULL,
'SELECT block FROM kyn_word_blocks(:words, :since, :until) AS block WHERE block > :bound ORDER BY block LIMIT :most');
