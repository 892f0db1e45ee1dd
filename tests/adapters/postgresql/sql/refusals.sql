-- Each refusal: its sentence, then its state. 22023: an argument breaks its rule; 22003: no answer, no argument at fault.
\set VERBOSITY default
SELECT fin_sln(10000, 1000, 0); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2.5); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2024-11-15', 2); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, 'monthly'); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, 7); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, 'Infinity'); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, 'nan'); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, ''); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, 'täglich'); \echo :LAST_ERROR_SQLSTATE
SELECT fin_mirr(ARRAY[-1, 2], 0, 0.1); \echo :LAST_ERROR_SQLSTATE
SELECT fin_nper(0.005, -4, 20000); \echo :LAST_ERROR_SQLSTATE
-- A search without a rate is no refusal, nor are flows of one sign: one group of many must not end a query.
SELECT fin_irr(ARRAY[1, 2]), fin_mirr(ARRAY[1, 2], 0.1, 0.1), fin_rate(10, 1, 1), fin_why_irr(ARRAY[1, 2]);
SELECT deal, fin_irr(flow, at), fin_mirr(flow, 0.5, 0.5, at) FROM (VALUES (1, -1, 1), (1, 2, 2), (2, 1, 1), (2, 2, 2)) flows(deal, flow, at)
GROUP BY deal ORDER BY deal;
SELECT fin_mirr(flow, 0, 0.1, flow) FROM generate_series(-1, 1) flow; \echo :LAST_ERROR_SQLSTATE

-- Infinity is a date and no day. Dates without end of either sign; the first one is named.
SELECT fin_coupnum('-infinity', '2030-11-15', 2); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum('2025-01-20', 'infinity', 2.5); \echo :LAST_ERROR_SQLSTATE
SELECT fin_xnpv(0.1, ARRAY[1, 2], ARRAY['2025-01-01', 'infinity']::date[]); \echo :LAST_ERROR_SQLSTATE

-- Lists that belong together and do not pair up; a date must not pass for a guess.
SELECT fin_xnpv(0.1, ARRAY[1, 2, 3], ARRAY['2025-01-01']::date[]); \echo :LAST_ERROR_SQLSTATE
SELECT fin_xirr(ARRAY[-1, 2, 3], ARRAY['2025-01-01', '2026-01-01']::date[]); \echo :LAST_ERROR_SQLSTATE

-- A list counts as one argument, in which a value has its own place.
SELECT fin_mirr(array_agg(n), -5, 0.1) FROM generate_series(-1, 998) n;
SELECT fin_mirr(n, -5, 0.1, n) FROM generate_series(-1, 998) n;

-- Too many, too few, the wrong types.
SELECT fin_sln(10000, 1000); \echo :LAST_ERROR_SQLSTATE
SELECT fin_sln(10000, 1000, 5, 1); \echo :LAST_ERROR_SQLSTATE
SELECT fin_coupnum(45677, 47802, 2); \echo :LAST_ERROR_SQLSTATE

-- An answer that is no date of the server's: three coupons a year have no months, nor a schedule that means anything.
SELECT fin_coupncd('2025-01-20', '2030-11-15', 3); \echo :LAST_ERROR_SQLSTATE
-- Days that nobody can mean.
SELECT fin_couppcd('4714-11-24 BC', '4700-11-15 BC', 2); \echo :LAST_ERROR_SQLSTATE

-- Longer lists than a call may have; a basis of a million characters, and one that a terminal would obey.
SELECT fin_npv(0.1, array_fill(1::float8, ARRAY[4194305])); \echo :LAST_ERROR_SQLSTATE
SELECT fin_npv(1, array_fill(1::float8, ARRAY[4194304])) AS "1/2 + 1/4 + ...";
\set VERBOSITY sqlstate
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, repeat('x', 1000000));
\set VERBOSITY default
SELECT length(:'LAST_ERROR_MESSAGE') < 300 AS "its beginning", strpos(:'LAST_ERROR_MESSAGE', repeat('x', 57) || '...') > 0 AS cut;
SELECT fin_coupnum('2025-01-20', '2030-11-15', 2, E'a\nb\x1b[2Jc\u009b\u202e');

-- NULL instead of each of these, and the sentence as text; neither ends a query. What has an answer has no reason.
SELECT given, fin_try_sln(10000, 1000, given) AS tried, fin_why_sln(10000, 1000, given) AS reason
FROM unnest(ARRAY[5, 0, NULL, 'NaN', -1]::float8[]) given;
SELECT basis, fin_try_coupnum('2025-01-20', '2030-11-15', 2, basis) AS tried, fin_why_coupnum('2025-01-20', '2030-11-15', 2, basis) AS reason
FROM unnest(ARRAY['ACTUAL', 'monthly', NULL, '7']) basis;
SELECT fin_why_coupnum('2025-01-20', 'infinity', 2.5), fin_try_coupnum('2025-01-20', 'infinity', 2.5);
SELECT fin_why_coupncd('2025-01-20', '2030-11-15', 3), fin_try_coupncd('2025-01-20', '2030-11-15', 3);
SELECT fin_why_xnpv(0.1, ARRAY[1, 2, 3], ARRAY['2025-01-01']::date[]), fin_try_xnpv(0.1, ARRAY[1, 2, 3], ARRAY['2025-01-01']::date[]);
SELECT fin_why_npv(0.1, array_fill(1::float8, ARRAY[4194305])), fin_try_npv(0.1, array_fill(1::float8, ARRAY[4194305]));
SELECT fin_why_nper(0.005, -4, 20000), fin_try_nper(0.005, -4, 20000);
SELECT fin_why_xirr(ARRAY[1, 2], ARRAY['2025-01-01', '2026-01-01']::date[]), fin_try_xirr(ARRAY[1, 2], ARRAY['2025-01-01', '2026-01-01']::date[]);
SELECT fin_why_coupncd('2025-01-20', '2030-11-15', 2), fin_try_coupncd('2025-01-20', '2030-11-15', 2);

-- Parts of aggregates are not to be called.
SELECT fin_npv_result(NULL); \echo :LAST_ERROR_SQLSTATE

-- A transaction goes on after a refusal, and each is caught by its state.
DO $$
DECLARE refused int := 0;
BEGIN
    FOR i IN 1 .. 10000 LOOP
        BEGIN
            PERFORM fin_sln(10000, 1000, -i);
        EXCEPTION WHEN invalid_parameter_value THEN
            refused := refused + 1;
        END;
    END LOOP;
    RAISE NOTICE '% refused', refused;
END $$;

-- A long query of many calls ends when it is told to: each call is short, and between calls the server looks up.
SET statement_timeout = '200ms';
SELECT count(fin_yield('2025-01-20', '2030-11-15', 0.05, 90 + (n % 1000) / 100.0, 100, 2)) FROM generate_series(1, 100000000) n;
\echo :LAST_ERROR_SQLSTATE
-- In one expression too.
SELECT max(r) FROM generate_series(1, 1) one, LATERAL (SELECT sum(fin_yield('2025-01-20', '2030-11-15', 0.05, 90 + n % 7, 100, 2)) AS r
FROM generate_series(1, 10000000) n) s;
\echo :LAST_ERROR_SQLSTATE
RESET statement_timeout;
