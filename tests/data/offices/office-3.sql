
CREATE TABLE public.acc_stream (
    id integer NOT NULL,
    person_id integer NOT NULL,
    type_id integer NOT NULL,
    display_name text NOT NULL,
    kpp text NOT NULL,
    office_codes text NOT NULL,
    is_closed integer NOT NULL,
    CONSTRAINT acc_stream_display_name_check CHECK ((length(display_name) <= 1000)),
    CONSTRAINT acc_stream_id_check CHECK (((id >= 1) AND (id <= 2147483647))),
    CONSTRAINT acc_stream_is_closed_check CHECK ((is_closed = ANY (ARRAY[0, 1]))),
    CONSTRAINT acc_stream_kpp_check CHECK ((length(kpp) <= 9)),
    CONSTRAINT acc_stream_office_codes_check CHECK ((length(office_codes) <= 200))
);

CREATE TABLE public.acc_stream_type (
    id integer NOT NULL,
    name text NOT NULL,
    icon_key text NOT NULL,
    CONSTRAINT acc_stream_type_icon_key_check CHECK ((length(icon_key) <= 50)),
    CONSTRAINT acc_stream_type_name_check CHECK ((length(name) <= 200))
);

CREATE TABLE public.person (
    id integer NOT NULL,
    kind integer NOT NULL,
    inn text NOT NULL,
    kpp text NOT NULL,
    display_name text NOT NULL,
    owner_name text NOT NULL,
    is_main integer NOT NULL,
    parent_id integer,
    parent_kind integer,
    CONSTRAINT person_check CHECK ((((kind = 2) AND (parent_id IS NOT NULL) AND (parent_kind = 1)) OR ((kind <> 2) AND (parent_id IS NULL) AND (parent_kind IS NULL)))),
    CONSTRAINT person_display_name_check CHECK ((length(display_name) <= 1000)),
    CONSTRAINT person_id_check CHECK (((id >= 1) AND (id <= 2147483647))),
    CONSTRAINT person_inn_check CHECK ((length(inn) <= 12)),
    CONSTRAINT person_is_main_check CHECK ((is_main = ANY (ARRAY[0, 1]))),
    CONSTRAINT person_kind_check CHECK ((kind = ANY (ARRAY[1, 2, 3]))),
    CONSTRAINT person_kpp_check CHECK ((length(kpp) <= 9)),
    CONSTRAINT person_owner_name_check CHECK ((length(owner_name) <= 1000))
);

CREATE TABLE public.templ_type (
    id integer NOT NULL,
    knd text NOT NULL,
    short_name text NOT NULL,
    is_excluded integer NOT NULL,
    icon_key text NOT NULL,
    CONSTRAINT templ_type_icon_key_check CHECK ((length(icon_key) <= 50)),
    CONSTRAINT templ_type_id_check CHECK (((id >= 1) AND (id <= 2147483647))),
    CONSTRAINT templ_type_is_excluded_check CHECK ((is_excluded = ANY (ARRAY[0, 1]))),
    CONSTRAINT templ_type_knd_check CHECK ((length(knd) <= 20)),
    CONSTRAINT templ_type_short_name_check CHECK ((length(short_name) <= 500))
);

CREATE TABLE public.templ_type_category (
    templ_type_id integer NOT NULL,
    category_id integer NOT NULL,
    stream_type integer NOT NULL,
    allowed_for_main integer NOT NULL,
    allowed_for_branch integer NOT NULL,
    CONSTRAINT templ_type_category_allowed_for_branch_check CHECK ((allowed_for_branch = ANY (ARRAY[0, 1]))),
    CONSTRAINT templ_type_category_allowed_for_main_check CHECK ((allowed_for_main = ANY (ARRAY[0, 1])))
);

CREATE TABLE public.templ_type_name (
    templ_type_id integer NOT NULL,
    name_order integer NOT NULL,
    full_name text NOT NULL,
    CONSTRAINT templ_type_name_full_name_check CHECK ((length(full_name) <= 4000))
);

CREATE TABLE public.templ_type_time (
    templ_type_id integer NOT NULL,
    the_year integer NOT NULL,
    month_id integer NOT NULL
);

CREATE TABLE public.template (
    id integer NOT NULL,
    templ_type_id integer NOT NULL,
    beg_date date,
    end_date date,
    display_name text NOT NULL,
    icon_key text NOT NULL,
    CONSTRAINT template_check CHECK (((beg_date IS NULL) OR (end_date IS NULL) OR (beg_date <= end_date))),
    CONSTRAINT template_display_name_check CHECK ((length(display_name) <= 500)),
    CONSTRAINT template_icon_key_check CHECK ((length(icon_key) <= 50)),
    CONSTRAINT template_id_check CHECK (((id >= 1) AND (id <= 2147483647)))
);

CREATE TABLE public.vk_schema (
    version integer NOT NULL
);

INSERT INTO public.acc_stream VALUES (1, 1, 2, 'Комплект 1 налогоплательщика 1', '775201001', '7759', 0);
INSERT INTO public.acc_stream VALUES (2, 2, 3, 'Комплект 2 налогоплательщика 2', '772401001', '7747', 0);
INSERT INTO public.acc_stream VALUES (3, 3, 4, 'Комплект 3 налогоплательщика 3', '774801001', '7712', 0);
INSERT INTO public.acc_stream VALUES (4, 4, 5, 'Комплект 4 налогоплательщика 4', '771201001', '7725', 0);
INSERT INTO public.acc_stream VALUES (5, 5, 6, 'Комплект 5 налогоплательщика 5', '772401001', '7715', 0);
INSERT INTO public.acc_stream VALUES (6, 6, 7, 'Комплект 6 налогоплательщика 6', '775201001', '7724', 0);
INSERT INTO public.acc_stream VALUES (7, 7, 8, 'Комплект 7 налогоплательщика 7', '772001001', '7734', 0);
INSERT INTO public.acc_stream VALUES (8, 8, 9, 'Комплект 8 налогоплательщика 8', '772701001', '7732', 0);
INSERT INTO public.acc_stream VALUES (9, 9, 1, 'Комплект 9 налогоплательщика 9', '772301001', '7727', 0);
INSERT INTO public.acc_stream VALUES (10, 10, 2, 'Комплект 10 налогоплательщика 10', '774201001', '7739', 0);
INSERT INTO public.acc_stream VALUES (11, 11, 3, 'Комплект 11 налогоплательщика 11', '773401001', '7741', 0);
INSERT INTO public.acc_stream VALUES (12, 12, 4, 'Комплект 12 налогоплательщика 12', '775501001', '7753', 0);

INSERT INTO public.acc_stream_type VALUES (1, 'Отчетность в ИФНС', 'acc_stream');
INSERT INTO public.acc_stream_type VALUES (2, 'РСВ, НДФЛ и отчетность в ПФР', 'acc_stream_pfr');
INSERT INTO public.acc_stream_type VALUES (3, 'Отчетность в Росстат', 'acc_stream_rs');
INSERT INTO public.acc_stream_type VALUES (4, 'Страховые взносы в ФСС', 'acc_stream_ind');
INSERT INTO public.acc_stream_type VALUES (5, 'Отчетность в Росалкогольрегулирование', 'acc_stream_alc');
INSERT INTO public.acc_stream_type VALUES (6, 'Отчетность в Росприроднадзор', 'acc_stream_tech');
INSERT INTO public.acc_stream_type VALUES (7, 'Госрегистрация', 'acc_stream_reg');
INSERT INTO public.acc_stream_type VALUES (8, 'Отчетность охотничьего хозяйства', 'acc_stream_hunthub');
INSERT INTO public.acc_stream_type VALUES (9, 'Отчетность организаций финансового рынка', 'acc_stream_tech');

INSERT INTO public.person VALUES (1, 1, '7700000016', '771701001', 'ООО "Гранит-Гранит N 1"', 'Гранит-Гранит N 1, ООО', 1, NULL, NULL);
INSERT INTO public.person VALUES (2, 1, '7700000023', '774901001', 'ООО "Родник-Родник N 2"', 'Родник-Родник N 2, ООО', 1, NULL, NULL);
INSERT INTO public.person VALUES (3, 1, '7700000030', '771101001', 'ООО "Родник-Полюс N 3"', 'Родник-Полюс N 3, ООО', 1, NULL, NULL);
INSERT INTO public.person VALUES (4, 2, '7700000030', '774343882', 'ООО "Родник-Полюс N 3", филиал N 984', 'Родник-Полюс N 3, ООО, филиал N 984', 0, 3, 1);
INSERT INTO public.person VALUES (5, 3, '770000000540', '', 'ИП Вымпелов Иван Петрович 5', 'Вымпелов Иван Петрович 5', 0, NULL, NULL);
INSERT INTO public.person VALUES (6, 1, '7700000062', '770201001', 'ООО "Родник-Маяк N 6"', 'Родник-Маяк N 6, ООО', 1, NULL, NULL);
INSERT INTO public.person VALUES (7, 1, '7700000070', '774101001', 'ООО "Маяк-Восход N 7"', 'Маяк-Восход N 7, ООО', 1, NULL, NULL);
INSERT INTO public.person VALUES (8, 2, '7700000070', '775543981', 'ООО "Маяк-Восход N 7", филиал N 173', 'Маяк-Восход N 7, ООО, филиал N 173', 0, 7, 1);
INSERT INTO public.person VALUES (9, 1, '7700000094', '770501001', 'ООО "Восход-Родник N 9"', 'Восход-Родник N 9, ООО', 1, NULL, NULL);
INSERT INTO public.person VALUES (10, 3, '770000001030', '', 'ИП Восходов Иван Петрович 10', 'Восходов Иван Петрович 10', 0, NULL, NULL);
INSERT INTO public.person VALUES (11, 1, '7700000111', '773201001', 'ООО "Заря-Гранит N 11"', 'Заря-Гранит N 11, ООО', 1, NULL, NULL);
INSERT INTO public.person VALUES (12, 2, '7700000111', '773643328', 'ООО "Заря-Гранит N 11", филиал N 831', 'Заря-Гранит N 11, ООО, филиал N 831', 0, 11, 1);

INSERT INTO public.templ_type VALUES (1, '1100001', 'Форма Родник-1', 0, 'doc_blank');
INSERT INTO public.templ_type VALUES (2, '1100002', 'Форма Родник-2', 0, 'doc_blank');
INSERT INTO public.templ_type VALUES (3, '1100003', 'Форма Якорь-3', 0, 'doc_blank');

INSERT INTO public.templ_type_category VALUES (1, 2, 1, 0, 1);

INSERT INTO public.templ_type_name VALUES (1, 1, 'Отчет о показателях "Родник" по форме N 1');
INSERT INTO public.templ_type_name VALUES (2, 1, 'Отчет о показателях "Родник" по форме N 2');
INSERT INTO public.templ_type_name VALUES (3, 1, 'Отчет о показателях "Якорь" по форме N 3');
INSERT INTO public.templ_type_name VALUES (1, 2, '');

INSERT INTO public.templ_type_time VALUES (1, 2020, 13);

INSERT INTO public.template VALUES (1, 1, '2015-01-01', '2018-12-31', 'Форма Родник-1, редакция 1', 'doc_archived');
INSERT INTO public.template VALUES (2, 1, '2019-01-01', '2022-12-31', 'Форма Родник-1, редакция 2', 'doc_archived');
INSERT INTO public.template VALUES (3, 1, '2023-01-01', NULL, 'Форма Родник-1, редакция 3', 'doc_blank');
INSERT INTO public.template VALUES (4, 2, '2015-01-01', '2018-12-31', 'Форма Родник-2, редакция 1', 'doc_archived');
INSERT INTO public.template VALUES (5, 2, '2019-01-01', '2022-12-31', 'Форма Родник-2, редакция 2', 'doc_archived');
INSERT INTO public.template VALUES (6, 2, '2023-01-01', NULL, 'Форма Родник-2, редакция 3', 'doc_blank');
INSERT INTO public.template VALUES (7, 3, '2015-01-01', '2018-12-31', 'Форма Якорь-3, редакция 1', 'doc_archived');
INSERT INTO public.template VALUES (8, 3, '2019-01-01', '2022-12-31', 'Форма Якорь-3, редакция 2', 'doc_archived');
INSERT INTO public.template VALUES (9, 3, '2023-01-01', NULL, 'Форма Якорь-3, редакция 3', 'doc_blank');

INSERT INTO public.vk_schema VALUES (3);

ALTER TABLE ONLY public.acc_stream
    ADD CONSTRAINT acc_stream_pkey PRIMARY KEY (id);

ALTER TABLE ONLY public.acc_stream_type
    ADD CONSTRAINT acc_stream_type_pkey PRIMARY KEY (id);

ALTER TABLE ONLY public.person
    ADD CONSTRAINT person_id_kind_key UNIQUE (id, kind);

ALTER TABLE ONLY public.person
    ADD CONSTRAINT person_pkey PRIMARY KEY (id);

ALTER TABLE ONLY public.templ_type_category
    ADD CONSTRAINT templ_type_category_pkey PRIMARY KEY (templ_type_id, category_id, stream_type);

ALTER TABLE ONLY public.templ_type_name
    ADD CONSTRAINT templ_type_name_pkey PRIMARY KEY (templ_type_id, name_order);

ALTER TABLE ONLY public.templ_type
    ADD CONSTRAINT templ_type_pkey PRIMARY KEY (id);

ALTER TABLE ONLY public.templ_type_time
    ADD CONSTRAINT templ_type_time_pkey PRIMARY KEY (templ_type_id, the_year, month_id);

ALTER TABLE ONLY public.template
    ADD CONSTRAINT template_pkey PRIMARY KEY (id);

CREATE INDEX acc_stream_by_person ON public.acc_stream USING btree (person_id);

CREATE INDEX person_by_parent ON public.person USING btree (parent_id);

CREATE INDEX template_by_type ON public.template USING btree (templ_type_id, beg_date);

ALTER TABLE ONLY public.acc_stream
    ADD CONSTRAINT acc_stream_person_id_fkey FOREIGN KEY (person_id) REFERENCES public.person(id);

ALTER TABLE ONLY public.acc_stream
    ADD CONSTRAINT acc_stream_type_id_fkey FOREIGN KEY (type_id) REFERENCES public.acc_stream_type(id);

ALTER TABLE ONLY public.person
    ADD CONSTRAINT person_parent_id_parent_kind_fkey FOREIGN KEY (parent_id, parent_kind) REFERENCES public.person(id, kind);

ALTER TABLE ONLY public.templ_type_category
    ADD CONSTRAINT templ_type_category_templ_type_id_fkey FOREIGN KEY (templ_type_id) REFERENCES public.templ_type(id);

ALTER TABLE ONLY public.templ_type_name
    ADD CONSTRAINT templ_type_name_templ_type_id_fkey FOREIGN KEY (templ_type_id) REFERENCES public.templ_type(id);

ALTER TABLE ONLY public.templ_type_time
    ADD CONSTRAINT templ_type_time_templ_type_id_fkey FOREIGN KEY (templ_type_id) REFERENCES public.templ_type(id);

ALTER TABLE ONLY public.template
    ADD CONSTRAINT template_templ_type_id_fkey FOREIGN KEY (templ_type_id) REFERENCES public.templ_type(id);

