-- The kinds of accounting streams with the pictures that stand for them.

INSERT INTO acc_stream_type (id, name, icon_key) VALUES (1, 'Отчетность в ИФНС', 'acc_stream');
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (2, 'РСВ, НДФЛ и отчетность в ПФР', 'acc_stream_pfr');
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (3, 'Отчетность в Росстат', 'acc_stream_rs');
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (4, 'Страховые взносы в ФСС', 'acc_stream_ind');
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (5, 'Отчетность в Росалкогольрегулирование', 'acc_stream_alc');
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (6, 'Отчетность в Росприроднадзор', 'acc_stream_tech');
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (7, 'Госрегистрация', 'acc_stream_reg');
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (8, 'Отчетность охотничьего хозяйства', 'acc_stream_hunthub');
-- The picture of the financial market is not in every list of pictures; the folder of technical reports is.
INSERT INTO acc_stream_type (id, name, icon_key) VALUES (9, 'Отчетность организаций финансового рынка', 'acc_stream_tech');
