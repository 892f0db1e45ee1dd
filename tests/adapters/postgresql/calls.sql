-- Compares calls with the verdicts of the embedded host: the lines of standard input, as engine_draws.cpp describes them.
--
--  (1) A call is made by SQL text, with the overload that takes as many arguments: types are what the server's own
--      catalogue says. A basis that is a code goes as text in one line and as a number in the next.
--  (2) What a date cannot be is skipped: a fraction of a day, a day that the server does not know.
--  (3) A number goes as its shortest text, which must read back to its bits.
--  (4) A calculation of lists is asked three times: as arrays, and as an aggregate over rows put in disorder.
--  (5) fin_try_ and fin_why_ are asked the same: no error, the same bits; the sentence of the line, which of an answer
--      that is missing is not known.
\set QUIET on
CREATE EXTENSION IF NOT EXISTS zelkovan;
CREATE TABLE calls (number serial, line text);
\copy calls (line) FROM pstdin WITH (FORMAT csv, DELIMITER E'\x01', QUOTE E'\x02')

CREATE TABLE outcomes (number int, calculation text, form text, outcome text);

-- A double of its 16 hexadecimal digits, by exact operations only.
CREATE FUNCTION double_of(digits text) RETURNS float8 LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE
    bits bigint := ('x' || digits)::bit(64)::bigint;
    exponent int := (bits >> 52) & 2047;
    fraction bigint := bits & ((1::bigint << 52) - 1);
    sign float8 := CASE WHEN bits < 0 THEN -1 ELSE 1 END;
BEGIN
    IF exponent = 2047 THEN RETURN sign * 'infinity'::float8; END IF;
    IF exponent = 0 THEN RETURN sign * (fraction::float8 * power(2::float8, -1074)); END IF;
    RETURN sign * ((fraction + (1::bigint << 52))::float8 * power(2::float8, exponent - 1075));
END $$;

CREATE FUNCTION bits_of(x float8) RETURNS text LANGUAGE sql IMMUTABLE AS $$ SELECT encode(float8send(x), 'hex') $$;
CREATE FUNCTION bits_of(x date) RETURNS text LANGUAGE sql IMMUTABLE AS $$ SELECT bits_of((x - date '1960-01-01')::float8) $$;

CREATE FUNCTION date_fits(day float8) RETURNS bool LANGUAGE sql IMMUTABLE AS $$
    SELECT day = trunc(day) AND day >= date '4714-11-24 BC' - date '1960-01-01'
                            AND day <= date '5874897-12-31' - date '1960-01-01' $$;

-- One value in SQL; NULL where the type cannot say it.
CREATE FUNCTION value_text(word text, type text) RETURNS text LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE x float8;
BEGIN
    IF word = '-' THEN RETURN NULL; END IF;  -- left out before the end
    IF word LIKE 't:%' THEN RETURN CASE WHEN type = 'text' THEN substr(word, 3) END; END IF;
    x := double_of(substr(word, 3));
    ASSERT bits_of(x) = substr(word, 3), format('a double was not read exactly: %s', word);
    IF type <> 'date' THEN
        ASSERT bits_of(x::text::float8) = substr(word, 3), format('a double was not written exactly: %s', x::text);
        RETURN x::text;
    END IF;
    IF NOT date_fits(x) THEN RETURN NULL; END IF;
    RETURN (date '1960-01-01' + x::int)::text;
END $$;

-- One argument in SQL; NULL as above.
CREATE FUNCTION argument_text(words text, type text) RETURNS text LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE
    written text := '{';
    word text;
    value text;
BEGIN
    IF type NOT LIKE '%[]' THEN RETURN quote_literal(value_text(words, type)) || '::' || type; END IF;
    IF words = '-' THEN RETURN quote_literal('{}') || '::' || type; END IF;
    FOREACH word IN ARRAY string_to_array(words, ',') LOOP
        value := value_text(word, rtrim(type, '[]'));
        IF value IS NULL THEN RETURN NULL; END IF;
        written := written || CASE WHEN written = '{' THEN '' ELSE ',' END || value;
    END LOOP;
    RETURN quote_literal(written || '}') || '::' || type;
END $$;

-- What comes of a query, written as in the file.
CREATE FUNCTION verdict_of(query text) RETURNS text LANGUAGE plpgsql AS $$
DECLARE answer text;
BEGIN
    EXECUTE query INTO answer;
    RETURN CASE WHEN answer IS NULL THEN E'missing\t-' ELSE E'answered\t' || answer END;
EXCEPTION
    WHEN invalid_parameter_value OR numeric_value_out_of_range THEN RETURN E'refused\t' || SQLERRM;
    WHEN datetime_field_overflow THEN RETURN E'out of range\t' || SQLERRM;
END $$;

-- 'same', 'skipped', or what is wrong; NULL without a query.
CREATE FUNCTION compared(query text, expected text, result_type text) RETURNS text LANGUAGE plpgsql STRICT AS $$
DECLARE found text := verdict_of(query);
BEGIN
    IF found = expected THEN RETURN 'same'; END IF;
    IF found = E'missing\t-' AND expected ~ '^(does not solve|too large|no answer)\t' THEN
        RETURN 'same';
    END IF;
    IF found LIKE 'out of range%' AND expected LIKE 'answered%' AND result_type = 'date'
       AND NOT date_fits(double_of(split_part(expected, E'\t', 2))) THEN
        RETURN 'skipped';
    END IF;
    RETURN format('%s -> %s, not %s', query, found, expected);
END $$;

-- The overload for that many arguments: the argument types.
CREATE FUNCTION overload(name text, given int, coded bool) RETURNS text[] LANGUAGE sql STABLE AS $$
    SELECT string_to_array(oidvectortypes(proargtypes), ', ')
    FROM pg_proc
    WHERE proname = name AND prokind = 'f' AND given BETWEEN pronargs - pronargdefaults AND pronargs
    ORDER BY (prosrc LIKE '%\_coded') = coded DESC, pronargs
    LIMIT 1 $$;

CREATE FUNCTION sql_type(server_type text) RETURNS text LANGUAGE sql IMMUTABLE AS $$
    SELECT replace(server_type, 'double precision', 'float8') $$;

-- The same flows as rows in disorder. Dated flows come back in the order of their days, which is the call's own only where
-- the days ascend.
CREATE FUNCTION aggregate_query(name text, arguments text[], types text[]) RETURNS text LANGUAGE plpgsql AS $$
DECLARE
    flows text;
    days text;
    ascending bool := true;
    in_call text[] := '{}';
    argument text;
    i int := 0;
BEGIN
    FOREACH argument IN ARRAY arguments LOOP
        i := i + 1;
        IF types[i] = 'float8[]' THEN flows := argument; argument := 'f';
        ELSIF types[i] = 'date[]' THEN days := argument; argument := 'd'; END IF;
        in_call := in_call || argument;
    END LOOP;
    IF flows = '''{}''::float8[]' THEN RETURN NULL; END IF;
    IF days IS NULL THEN
        RETURN format('SELECT bits_of(%s(%s, o)) FROM (SELECT * FROM unnest(%s) WITH ORDINALITY u(f, o) '
                      'ORDER BY md5(o::text)) s', name, array_to_string(in_call, ', '), flows);
    END IF;
    EXECUTE format('SELECT bool_and(d > before) FROM (SELECT d, lag(d, 1, ''-infinity'') OVER (ORDER BY o) AS before '
                   'FROM unnest(%s) WITH ORDINALITY u(d, o)) s', days) INTO ascending;
    IF NOT ascending THEN RETURN NULL; END IF;
    RETURN format('SELECT bits_of(%s(%s)) FROM (SELECT * FROM unnest(%s, %s) WITH ORDINALITY u(f, d, o) '
                  'ORDER BY md5(o::text)) s', name, array_to_string(in_call, ', '), flows, days);
END $$;

-- The same bits but no error; a sentence where there is no answer.
CREATE FUNCTION compared_ways(name text, arguments text, expected text) RETURNS text LANGUAGE plpgsql AS $$
DECLARE
    verdict text := split_part(expected, E'\t', 1);
    said text := split_part(expected, E'\t', 2);
    tried text;
    reason text;
    no_date bool;
BEGIN
    EXECUTE format('SELECT bits_of(%s(%s)), %s(%s)', replace(name, 'fin_', 'fin_try_'), arguments,
                   replace(name, 'fin_', 'fin_why_'), arguments) INTO tried, reason;
    no_date := coalesce(reason LIKE '%is out of the range of dates', false) AND verdict = 'answered';
    IF tried IS DISTINCT FROM (CASE WHEN verdict = 'answered' AND NOT no_date THEN said END) THEN
        RETURN format('fin_try_ of %s(%s) -> %s, not %s', name, arguments, tried, expected);
    END IF;
    IF no_date OR (CASE verdict WHEN 'answered' THEN reason IS NULL WHEN 'missing' THEN reason LIKE '%: %'
                                ELSE reason IS NOT DISTINCT FROM said END) THEN
        RETURN 'same';
    END IF;
    RETURN format('fin_why_ of %s(%s) -> %s, not %s', name, arguments, reason, expected);
END $$;

CREATE PROCEDURE compare_all() LANGUAGE plpgsql AS $$
DECLARE
    entry record;
    words text[];
    given int;
    name text;
    expected text;
    types text[];
    arguments text[];
    result_type text;
    query text;
BEGIN
    FOR entry IN SELECT * FROM calls ORDER BY number LOOP
        words := string_to_array(entry.line, E'\t');
        given := cardinality(words) - 3;
        name := 'fin_' || lower(words[1]);
        expected := words[given + 2] || E'\t' || words[given + 3];
        types := overload(name, given, entry.number % 2 = 0 AND words[given + 1] NOT LIKE 't:%');
        ASSERT types IS NOT NULL, name || ' takes no ' || given || ' arguments';
        arguments := '{}';
        FOR i IN 1 .. given LOOP
            arguments := arguments || argument_text(words[i + 1], sql_type(types[i]));
        END LOOP;
        IF array_position(arguments, NULL) IS NOT NULL THEN
            INSERT INTO outcomes VALUES (entry.number, words[1], 'function', 'skipped');
            CONTINUE;
        END IF;
        SELECT typname INTO result_type FROM pg_proc JOIN pg_type ON pg_type.oid = prorettype WHERE proname = name LIMIT 1;
        query := format('SELECT bits_of(%s(%s))', name, array_to_string(arguments, ', '));
        INSERT INTO outcomes VALUES (entry.number, words[1], 'function', compared(query, expected, result_type));
        INSERT INTO outcomes VALUES (entry.number, words[1], 'way',
                                     compared_ways(name, array_to_string(arguments, ', '), expected));
        IF NOT 'double precision[]' = ANY (types) THEN CONTINUE; END IF;
        query := aggregate_query(name, arguments, ARRAY(SELECT sql_type(type) FROM unnest(types) type));
        INSERT INTO outcomes VALUES (entry.number, words[1], 'aggregate',
                                     coalesce(compared(query, expected, result_type), 'skipped'));
    END LOOP;
END $$;

CALL compare_all();

\pset format unaligned
\pset tuples_only on
SELECT outcome FROM outcomes WHERE outcome NOT IN ('same', 'skipped') ORDER BY number LIMIT 20;
SELECT format('%s %ss: %s the same, %s skipped, %s different; %s calculations', count(*), form,
              count(*) FILTER (WHERE outcome = 'same'), count(*) FILTER (WHERE outcome = 'skipped'),
              count(*) FILTER (WHERE outcome NOT IN ('same', 'skipped')),
              count(DISTINCT calculation) FILTER (WHERE outcome = 'same'))
FROM outcomes GROUP BY form ORDER BY form;

DO $$
DECLARE
    same int := (SELECT count(*) FROM outcomes WHERE form = 'function' AND outcome = 'same');
    least int := (SELECT count(*) FROM calls) * 9 / 10;
BEGIN
    ASSERT NOT EXISTS (SELECT FROM outcomes WHERE outcome NOT IN ('same', 'skipped')), 'some calls differ';
    ASSERT same >= least, format('%s calls compared, not %s', same, least);
    ASSERT (SELECT count(DISTINCT calculation) FROM outcomes WHERE outcome = 'same')
         = (SELECT count(DISTINCT split_part(line, E'\t', 1)) FROM calls), 'a calculation was never compared';
END $$;
