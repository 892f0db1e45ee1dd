-- Answers that can be worked out by hand: depreciation, whole coupon dates, 1 + rate to a small power.
SELECT fin_sln(10000, 1000, 5) AS "(10000 - 1000) / 5";
SELECT fin_syd(10000, 1000, 5, 1) AS "9000 * 5 / 15";
SELECT fin_ddb(10000, 1000, 10, 3) AS "10000 * 0.8 * 0.8 * 0.2", fin_ddb(10000, 1000, 10, 3, 2) AS "the default factor";
SELECT fin_couppcd('2025-01-20', '2030-11-15', 2) AS before, fin_coupncd('2025-01-20', '2030-11-15', 2) AS after;
SELECT pg_typeof(fin_couppcd('2025-01-20', '2030-11-15', 2)) AS a_date, pg_typeof(fin_sln(1, 0, 1)) AS a_number;
SELECT fin_dollarde(1.5, 8) AS "1 + 5/8";

-- By position, by name, mixed. Words of SQL are quoted.
SELECT fin_vdb(10000, 500, 10, 6, 10, 1.5, 0) = fin_vdb(cost => 10000, salvage => 500, life => 10, start => 6,
       "end" => 10, factor => 1.5, no_switch => 0) AS same;
SELECT fin_cumipmt(0.005, 360, 200000, 1, "end_period" => 12) = fin_cumipmt(0.005, 360, 200000, 1, 12) AS same;
SELECT fin_price(settlement => '2025-01-20', maturity => '2030-11-15', rate => 0.05, yield => 0.06, redemption => 100,
                 frequency => 2, basis => 'ACTUAL') = fin_price('2025-01-20', '2030-11-15', 0.05, 0.06, 100, 2, 'ACTUAL') AS same;

-- A basis is its keyword, in any case and with blanks, its code as text, or its code.
SELECT given, fin_coupdaybs('2025-01-20', '2030-11-15', 2, given) AS days
FROM unnest(ARRAY['30/360', 'actual', ' Act/360 ', 'EU30/360', '0', '1', '4']) given;
SELECT fin_coupdaybs('2025-01-20', '2030-11-15', 2, 1) AS actual, fin_coupdaybs('2025-01-20', '2030-11-15', 2, 0.0) AS "30/360";
SELECT fin_coupdaybs('2025-01-20', '2030-11-15', 2) = fin_coupdaybs('2025-01-20', '2030-11-15', 2, '30/360') AS default_basis;

-- A value missing, no answer: NULL or NaN, in any place.
SELECT fin_sln(NULL, 1000, 5) AS a, fin_sln(10000, NULL, 5) AS b, fin_sln(10000, 1000, NULL) AS c, fin_sln('NaN', 1000, 5) AS d;
SELECT fin_coupncd(NULL, '2030-11-15', 2) AS a, fin_coupncd('2025-01-20', '2030-11-15', 2, NULL) AS b,
       fin_coupncd('2025-01-20', '2030-11-15', 2, float8 'NaN') AS c;
-- A value missing goes before every fault.
SELECT fin_sln(NULL, 1000, -5) AS a, fin_coupncd('2025-01-20', 'infinity', 'NaN') AS b;

-- Lists are arrays.
SELECT fin_npv(1, ARRAY[2, 4, 8]) AS "2/2 + 4/4 + 8/8", fin_npv(1, '{}'::float8[]) AS nothing, fin_npv(1) AS left_out;
SELECT fin_fvschedule(100, ARRAY[0, 1, 1]) AS "100 * 1 * 2 * 2";
SELECT fin_xnpv(1, ARRAY[8, 8, 8], ARRAY['2023-01-01', '2024-01-01', '2022-01-01']::date[]) AS "8 + 4 + 16";
SELECT fin_npv(1, ARRAY[[2, 4], [8, 16]]) AS "one more: 16/16", fin_npv(1, '[5:6]={2,4}'::float8[]) AS other_bounds;
SELECT fin_npv(1, ARRAY[2, NULL, 8]) AS a, fin_npv(1, ARRAY[2, float8 'NaN', 8]) AS b, fin_npv(1, NULL::float8[]) AS c,
       fin_xnpv(1, ARRAY[8, 8], ARRAY[NULL, '2024-01-01']::date[]) AS d;
-- An array that has lost its only NULL.
SELECT fin_npv(1, array_remove(ARRAY[2, NULL, 4], NULL)) AS removed;
CREATE TEMP TABLE lists AS SELECT ARRAY[2, NULL, 8]::float8[] AS flows;
UPDATE lists SET flows[2] = 4;
SELECT fin_npv(1, flows) AS filled FROM lists;

-- What the server knows of them.
SELECT count(DISTINCT proname) = 3 * current_setting('test.calculations')::int AS every_calculation,
       bool_and(provolatile = 'i') AS immutable, bool_and(proisstrict) AS strict,
       bool_and(proparallel = 's') AS parallel_safe, min(procost) AS least_cost, max(procost) AS most,
       bool_and(obj_description(oid, 'pg_proc') IS NOT NULL) AS described
FROM pg_proc WHERE proname ~ '^fin_' AND prokind = 'f' AND prosrc ~ '^zelkovan_fin_(try_|why_)?[a-z]+(_coded)?$' AND prosrc !~ 'flows';
-- What takes an array, and nothing else, is an aggregate, too.
SELECT array_agg(DISTINCT proname ORDER BY proname) FILTER (WHERE prokind = 'a')
     = array_agg(DISTINCT proname ORDER BY proname) FILTER (WHERE 'float8[]'::regtype = ANY (proargtypes)) AS every_list,
       bool_and(proparallel = 's') AS parallel_safe, bool_and(obj_description(oid, 'pg_proc') IS NOT NULL) AS described
FROM pg_proc WHERE proname ~ '^fin_' AND proname !~ '^fin_(try|why)_';
SELECT obj_description('fin_sln(float8, float8, float8)'::regprocedure);
SELECT count(*) AS without_comment FROM pg_depend JOIN pg_proc ON pg_proc.oid = objid
WHERE refobjid = (SELECT oid FROM pg_extension WHERE extname = 'zelkovan') AND deptype = 'e'
  AND obj_description(objid, 'pg_proc') IS NULL;
CREATE INDEX ON lists (fin_npv(1, flows));

-- It can be moved to another schema, renamed, dropped and made again.
CREATE SCHEMA other;
ALTER EXTENSION zelkovan SET SCHEMA other;
SELECT other.fin_sln(10000, 1000, 5);
ALTER FUNCTION other.fin_sln RENAME TO straight_line;
SELECT other.straight_line(10000, 1000, 5);
ALTER FUNCTION other.straight_line RENAME TO fin_sln;
ALTER EXTENSION zelkovan SET SCHEMA public;
DROP TABLE lists;
BEGIN;
DROP EXTENSION zelkovan;
CREATE EXTENSION zelkovan;
SELECT fin_sln(10000, 1000, 5);
ROLLBACK;
