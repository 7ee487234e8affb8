-- Schema 5 of the database: what the log window searches.

-- The numbers that the parties had when the record was made, where a callsign stands for them; direction is 1 for a record of what came
-- in, 2 for what went out. All are empty in records of older programs.
ALTER TABLE event ADD COLUMN from_number VARCHAR(64);
ALTER TABLE event ADD COLUMN to_number VARCHAR(64);
ALTER TABLE event ADD COLUMN direction SMALLINT;

-- An index of words behind the records: a console adds 128 of them at a time, once all are there, and never in the transaction that
-- stores one. What is not indexed yet is read.
CREATE TABLE event_block (
    block INTEGER PRIMARY KEY,
    first_time DATETIME NOT NULL,
    last_time DATETIME NOT NULL
);
CREATE VIRTUAL TABLE event_words USING fts5(words, content='', columnsize=0, detail=none, prefix='2 3', tokenize='ascii');
CREATE TRIGGER event_block_words AFTER INSERT ON event_block
BEGIN
    INSERT INTO event_words (rowid, words)
    SELECT NEW.block,
           group_concat(kyn_event_words(event_type, "desc", from_address, to_address, from_number, to_number), ' ')
    FROM event
    WHERE event_id BETWEEN NEW.block * 128 AND NEW.block * 128 + 127;
END;

INSERT INTO index_def (table_name, index_name, field_no, field_name, ignore_case) VALUES
    ('event_block', 'PrimaryKey', 1, 'block', 0);

{include event_queries.sql}

INSERT INTO stored_query (name, table_name, sql) VALUES
('index_events', NULL,
'INSERT INTO event_block (block, first_time, last_time)
 SELECT event_id / 128, min(time_stamp), max(time_stamp)
 FROM event
 WHERE event_id BETWEEN (SELECT min(event_id) / 128 * 128 FROM event
                         WHERE event_id >= (SELECT coalesce(max(block) + 1, 0) * 128 FROM event_block))
                    AND (SELECT min(event_id) / 128 * 128 + :most - 1 FROM event
                         WHERE event_id >= (SELECT coalesce(max(block) + 1, 0) * 128 FROM event_block))
   AND event_id < (SELECT (max(event_id) + 1) / 128 * 128 FROM event)
 GROUP BY event_id / 128'),

('find_word_blocks_before', NULL,
'SELECT block
 FROM event_words CROSS JOIN event_block ON block = event_words.rowid
 WHERE event_words MATCH :words AND event_words.rowid < :bound AND last_time >= :since AND first_time < :until
 ORDER BY event_words.rowid DESC
 LIMIT :most'),

('find_word_blocks_after', NULL,
'SELECT block
 FROM event_words CROSS JOIN event_block ON block = event_words.rowid
 WHERE event_words MATCH :words AND event_words.rowid > :bound AND last_time >= :since AND first_time < :until
 ORDER BY event_words.rowid
 LIMIT :most');
