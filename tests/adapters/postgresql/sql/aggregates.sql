-- Aggregates over flows give the answers of the functions over arrays, whatever the order of the rows.
CREATE TABLE flows (deal int, flow float8, period bigint, day date);
INSERT INTO flows
SELECT deal, CASE WHEN period = 0 THEN -1000 - deal ELSE 90 + (deal * 7 + period * 13) % 29 END, period,
       date '2020-02-29' + (period * 91 + deal % 5)::int
FROM generate_series(1, 40) deal, generate_series(0, 19) period
ORDER BY md5(deal || ' ' || period);

CREATE TABLE lists AS
SELECT deal, array_agg(flow ORDER BY period) AS flows, array_agg(day ORDER BY period) AS days FROM flows GROUP BY deal;

SELECT count(*) AS deals,
       bool_and(by_period.irr = fin_irr(flows) AND by_day.irr = fin_irr(flows) AND ordered.irr = fin_irr(flows)) AS irr,
       bool_and(by_period.npv = fin_npv(0.1, flows) AND by_day.npv = fin_npv(0.1, flows) AND ordered.npv = fin_npv(0.1, flows)) AS npv,
       bool_and(by_period.mirr = fin_mirr(flows, 0.1, 0.05) AND by_day.mirr = fin_mirr(flows, 0.1, 0.05)
                AND ordered.mirr = fin_mirr(flows, 0.1, 0.05)) AS mirr,
       bool_and(by_period.value = fin_fvschedule(1, flows) AND by_day.value = fin_fvschedule(1, flows)
                AND ordered.value = fin_fvschedule(1, flows)) AS fvschedule,
       bool_and(dated.xirr = fin_xirr(flows, days) AND dated.guessed = fin_xirr(flows, days, 0.2)) AS xirr,
       bool_and(dated.xnpv = fin_xnpv(0.1, flows, days)) AS xnpv
FROM lists
JOIN (SELECT deal, fin_irr(flow, period) AS irr, fin_npv(0.1, flow, period) AS npv, fin_mirr(flow, 0.1, 0.05, period) AS mirr,
             fin_fvschedule(1, flow, period) AS value FROM flows GROUP BY deal) by_period USING (deal)
JOIN (SELECT deal, fin_irr(flow, day) AS irr, fin_npv(0.1, flow, day) AS npv, fin_mirr(flow, 0.1, 0.05, day) AS mirr,
             fin_fvschedule(1, flow, day) AS value FROM flows GROUP BY deal) by_day USING (deal)
JOIN (SELECT deal, fin_irr(flow ORDER BY day) AS irr, fin_npv(0.1, flow ORDER BY day) AS npv,
             fin_mirr(flow, 0.1, 0.05 ORDER BY day) AS mirr, fin_fvschedule(1, flow ORDER BY day) AS value
      FROM flows GROUP BY deal) ordered USING (deal)
JOIN (SELECT deal, fin_xirr(flow, day) AS xirr, fin_xirr(flow, day, 0.2) AS guessed, fin_xnpv(0.1, flow, day) AS xnpv
      FROM flows GROUP BY deal) dated USING (deal);

-- Ties are in the order of their values, zeros too: two flows of one day are the same in either order of rows.
SELECT fin_npv(1, f, 0) AS "2/2 + 4/4 + 8/8" FROM (VALUES (8::float8), (2), (4)) v(f);
SELECT fin_npv(1, f, 0) = fin_npv(1, ARRAY[-1, '-0', 0, 1]::float8[]) AS same
FROM (VALUES (float8 '0'), ('1'), ('-0'), ('-1')) v(f);
SELECT fin_xnpv(0.1, f, d) = fin_xnpv(0.1, ARRAY[-5, 1, 3], ARRAY['2025-01-01', '2025-01-01', '2026-01-01']::date[]) AS same
FROM (VALUES (3, date '2026-01-01'), (1, '2025-01-01'), (-5, '2025-01-01')) v(f, d);
-- Without a key or ORDER BY they stay as they come.
SELECT fin_npv(1, f) AS "8/2 + 2/4 + 4/8" FROM (VALUES (8::float8), (2), (4)) v(f);

-- Extreme keys.
SELECT fin_npv(1, f, k) AS "2/2 + 4/4 + 8/8" FROM (VALUES (8::float8, 9223372036854775807), (2, -9223372036854775808), (4, 0)) v(f, k);
SELECT fin_npv(1, f, k) AS "2/2 + 4/4 + 8/8" FROM (VALUES (8::float8, date 'infinity'), (2, '-infinity'), (4, '2025-01-01')) v(f, k);

-- A value missing anywhere, no answer; rows are left out by FILTER. No rows, no answer.
SELECT fin_npv(1, f, k) AS flow FROM (VALUES (8::float8, 1), (NULL, 2)) v(f, k);
SELECT fin_npv(1, f, k) AS nan FROM (VALUES (8::float8, 1), ('NaN', 2)) v(f, k);
SELECT fin_npv(1, f, k) AS key FROM (VALUES (8::float8, 1), (4, NULL)) v(f, k);
SELECT fin_npv(r, f, k) AS rate FROM (VALUES (1::float8, 8, 1), (NULL, 4, 2)) v(r, f, k);
SELECT fin_xnpv(1, f, d) AS date FROM (VALUES (8::float8, date '2025-01-01'), (4, NULL)) v(f, d);
SELECT fin_npv(1, f, k) FILTER (WHERE f IS NOT NULL) AS "8/2" FROM (VALUES (8::float8, 1), (NULL, 2)) v(f, k);
SELECT fin_npv(1, f, 1) AS npv, fin_irr(f, 1) AS irr, fin_xirr(f, '2025-01-01') AS xirr FROM (SELECT 1::float8 AS f) v WHERE false;

-- Refusals.
SELECT fin_npv(0, f, k) FROM (VALUES (8::float8, 1)) v(f, k); \echo :LAST_ERROR_SQLSTATE
SELECT fin_npv(r, f, k) FROM (VALUES (1::float8, 8, 1), (2, 4, 2)) v(r, f, k); \echo :LAST_ERROR_SQLSTATE
SELECT fin_irr(f, k) AS no_rate FROM (VALUES (8::float8, 1), (9, 2)) v(f, k);
SELECT fin_xnpv(1, f, d) FROM (VALUES (8::float8, date 'infinity')) v(f, d); \echo :LAST_ERROR_SQLSTATE
-- What is missing goes before what is refused, in whatever order the rows come.
SELECT fin_xnpv(r, f, d) AS first, fin_xnpv(r, f, d ORDER BY d DESC) AS last
FROM (VALUES (1::float8, 1::float8, date 'infinity'), (2, 1, '2025-01-01'), (2, NULL, '2025-01-02')) v(r, f, d);

-- As window functions; rates of return so far.
SELECT period, fin_npv(1, flow, period) OVER (ORDER BY period) AS so_far,
       fin_npv(1, flow, period) OVER (ORDER BY period ROWS BETWEEN 1 PRECEDING AND CURRENT ROW) AS of_two
FROM (VALUES (2::float8, 1), (4, 2), (8, 3), (16, 4)) v(flow, period);
SELECT fin_npv(1, f, 1) AS "2/2 + 2/4 + 16/8", fin_npv(DISTINCT 1, f, 1) AS "2/2 + 16/4" FROM (VALUES (2::float8), (16), (2)) v(f);
SELECT deal % 2 AS odd, deal % 3 AS three, count(*), fin_npv(0.1, flow, period) IS NOT NULL AS npv
FROM flows GROUP BY GROUPING SETS ((deal % 2), (deal % 3)) ORDER BY 1, 2;

-- Many flows of one group, and many groups.
SELECT fin_npv(1, 1, n) AS one FROM generate_series(1, 1000000) n;
SELECT fin_npv(1, 1, n) FROM generate_series(1, 4194305) n; \echo :LAST_ERROR_SQLSTATE
SET work_mem = '64kB';
SELECT count(*) AS groups, sum(npv) AS "2 * 50000" FROM (SELECT n % 50000 AS g, fin_npv(1, CASE WHEN n < 50000 THEN 2 ELSE 4 END, n) AS npv
FROM generate_series(0, 99999) n GROUP BY 1) s;
RESET work_mem;
DROP TABLE lists;
