-- Parallel plans give the bits of serial ones.
\set SHOW_CONTEXT never
SET parallel_setup_cost = 0;
SET parallel_tuple_cost = 0;
SET min_parallel_table_scan_size = 0;
CREATE TABLE many AS
SELECT n % 100 AS deal, n AS period, date '2000-01-01' + n AS day,
       CASE WHEN n <= 100 THEN -20000 ELSE 40 + (n * 7919) % 100 + 1.0 / n END::float8 AS flow
FROM generate_series(1, 30000) n ORDER BY md5(n::text);
ALTER TABLE many SET (parallel_workers = 3);
ANALYZE many;

CREATE VIEW answers AS
SELECT deal, fin_npv(0.0001, flow, period) AS npv, fin_npv(0.0001, flow, day) AS npv_by_day, fin_irr(flow, period) AS irr,
       fin_mirr(flow, 0.0001, 0.0002, period) AS mirr, fin_fvschedule(1, flow / 100000, period) AS value,
       fin_xnpv(0.1, flow, day) AS xnpv, fin_xirr(flow, day) AS xirr, fin_xirr(flow, day, 0.1) AS xirr_guess
FROM many GROUP BY deal;

SET max_parallel_workers_per_gather = 0;
CREATE TABLE serial_answers AS SELECT * FROM answers;
SET max_parallel_workers_per_gather = 3;
EXPLAIN (COSTS OFF) SELECT deal, fin_npv(0.0001, flow, period) FROM many GROUP BY deal;
SET enable_hashagg = off;
CREATE TABLE sorted_answers AS SELECT * FROM answers;
RESET enable_hashagg;
SELECT count(*) AS deals, count(*) FILTER (WHERE a IS NOT DISTINCT FROM s) AS same, count(a.irr) AS rates
FROM answers a JOIN serial_answers s USING (deal);
SELECT count(*) FILTER (WHERE a IS NOT DISTINCT FROM s) AS same FROM sorted_answers a JOIN serial_answers s USING (deal);
SELECT bool_and(float8send(a.npv) = float8send(s.npv) AND float8send(a.irr) = float8send(s.irr)
                AND float8send(a.mirr) = float8send(s.mirr) AND float8send(a.value) = float8send(s.value)
                AND float8send(a.xnpv) = float8send(s.xnpv) AND float8send(a.xirr) = float8send(s.xirr)) AS bits
FROM answers a JOIN serial_answers s USING (deal);

-- One group over all workers; a value missing and arguments that differ, seen by one worker alone.
EXPLAIN (COSTS OFF) SELECT fin_npv(0.0001, flow, period) FROM many;
SELECT fin_npv(0.0001, flow, period) = fin_npv(0.0001, flow ORDER BY period) AS same FROM many;
SELECT fin_npv(0.0001, nullif(flow, (SELECT max(flow) FROM many)), period) AS missing FROM many;
SELECT fin_npv(CASE WHEN period = 77 THEN 0.1 ELSE 0.0001 END, flow, period) FROM many;
\echo :LAST_ERROR_SQLSTATE

-- A worker that gets no rows, and none that gets any.
SELECT fin_npv(1, flow, period) = flow / 2 AS one FROM many WHERE period = 5 GROUP BY flow;
SELECT fin_npv(1, flow, period) AS none FROM many WHERE period = 0;

-- Calls within workers, and refusals that come from there.
SET force_parallel_mode = on;
SELECT count(fin_pmt(0.01, 12, flow)) FROM many;
SELECT count(fin_pmt(0.01, CASE WHEN period = 4711 THEN 2.5 ELSE 12 END, flow)) FROM many;
\echo :LAST_ERROR_SQLSTATE
RESET force_parallel_mode;
DROP TABLE many, serial_answers, sorted_answers CASCADE;
