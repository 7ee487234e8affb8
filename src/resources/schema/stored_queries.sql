-- The stored queries of schema 1 whose text every engine understands; its first script includes them.

INSERT INTO stored_query (name, table_name, sql) VALUES
('find_address_ob_callsign', NULL,
'SELECT address_id, callsign, "IDENT", dynamic,
        CASE "Type" WHEN 2 THEN ''talkgroup'' ELSE ''individual'' END AS iconkey
 FROM address
 WHERE (:lookfor = '''' OR kyn_match(:lookfor, callsign, "IDENT"))
 ORDER BY kyn_fold(callsign)'),

('find_address_ob_ident', NULL,
'SELECT address_id, callsign, "IDENT", dynamic,
        CASE "Type" WHEN 2 THEN ''talkgroup'' ELSE ''individual'' END AS iconkey
 FROM address
 WHERE (:lookfor = '''' OR kyn_match(:lookfor, callsign, "IDENT"))
 ORDER BY "IDENT"'),

('drop_address', NULL,
'DELETE FROM address WHERE address_id = :id'),

('browse_individuals', 'address',
'SELECT address_id, callsign, "IDENT", dynamic, note, "Type", "Name"
 FROM address
 WHERE "Type" = 1
 ORDER BY kyn_fold(callsign)'),

('browse_talkgroups', 'address',
'SELECT address_id, callsign, "IDENT", dynamic, note, "Type", default_pos
 FROM address
 WHERE "Type" = 2
 ORDER BY kyn_fold(callsign)'),

('find_group_ob_callsign', NULL,
'SELECT callsign, "IDENT", dynamic
 FROM address
 WHERE "Type" = 2 AND (:lookfor = '''' OR kyn_match(:lookfor, callsign, "IDENT"))
 ORDER BY kyn_fold(callsign)'),

('find_group_ob_ident', NULL,
'SELECT callsign, "IDENT", dynamic, default_pos AS pos, address_id
 FROM address
 WHERE "Type" = 2 AND (:lookfor = '''' OR kyn_match(:lookfor, callsign, "IDENT"))
 ORDER BY "IDENT"'),

('dynamic_members', NULL,
'SELECT a.callsign AS callsign, r.group_id AS group_id, r.member_id AS member_id, r.pos AS pos
 FROM dynamic_regroup AS r
 JOIN address AS a ON a.address_id = r.member_id
 ORDER BY r.group_id, r.pos, kyn_fold(a.callsign)'),

('find_individual_ob_callsign', NULL,
'SELECT address_id, callsign, "IDENT", "Name", dynamic, on_duty, ''individual'' AS iconkey
 FROM address
 WHERE "Type" = 1 AND (:lookfor = '''' OR kyn_match(:lookfor, callsign, "IDENT", "Name"))
 ORDER BY kyn_fold(callsign)'),

('update_duty_status', NULL,
'UPDATE address SET on_duty = (:ds <> 0)
 WHERE "Type" = 1 AND kyn_fold(callsign) = kyn_fold(:cs)'),

('ungroup', NULL,
'DELETE FROM dynamic_regroup WHERE group_id = :gi AND pos = :p'),

('ind_ungroup', NULL,
'DELETE FROM dynamic_regroup WHERE member_id = :mi AND pos = :p'),

('find_users_ob_user', NULL,
'SELECT profile_id, "UserName", callsign, logged_on, allow_dr
 FROM user_profile
 WHERE (:lookfor = '''' OR kyn_match(:lookfor, "UserName", callsign))
 ORDER BY kyn_fold("UserName"), profile_id'),

('find_users_ob_callsign', NULL,
'SELECT profile_id, "UserName", callsign, logged_on, allow_dr
 FROM user_profile
 WHERE (:lookfor = '''' OR kyn_match(:lookfor, "UserName", callsign))
 ORDER BY kyn_fold(callsign), profile_id'),

('change_user_profile', NULL,
'UPDATE user_profile SET callsign = :cs, allow_dr = (:dr <> 0) WHERE profile_id = :id'),

('drop_user_profile', NULL,
'DELETE FROM user_profile WHERE profile_id = :id');
