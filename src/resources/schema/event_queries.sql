-- The stored queries of the log's index whose text every engine understands. A block is 128 records by their numbers.

INSERT INTO stored_query (name, table_name, sql) VALUES
('event_index_state', NULL,
'SELECT coalesce((SELECT max(block) + 1 FROM event_block), 0) * 128 AS next_id,
        coalesce((SELECT max(event_id) FROM event), 0) AS newest_id'),

('find_events', NULL,
'SELECT event_id, time_stamp, event_type, "desc", from_address, to_address, from_number, to_number, direction,
        operator, console, console_number, record_id
 FROM event
 WHERE event_id BETWEEN :first AND :last
 ORDER BY event_id'),

('find_event_at', NULL,
'SELECT event_id
 FROM event
 WHERE time_stamp >= :since
 ORDER BY time_stamp, event_id
 LIMIT 1'),

('find_blocks_before', NULL,
'SELECT block
 FROM event_block
 WHERE block < :bound AND last_time >= :since AND first_time < :until
 ORDER BY block DESC
 LIMIT :most'),

('find_blocks_after', NULL,
'SELECT block
 FROM event_block
 WHERE block > :bound AND last_time >= :since AND first_time < :until
 ORDER BY block
 LIMIT :most');
