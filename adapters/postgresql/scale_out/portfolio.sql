-- A generated portfolio, through the coordinator: rows go to their shards. The same rows once more in tables of the
-- coordinator's own, to compare with. :bonds says how many.
CREATE TABLE local_bonds AS
SELECT id, id % 500 AS issuer, date '2025-01-20' AS settlement, date '2026-03-15' + id * 7919 % 10000 AS maturity,
       0.01 + id * 31 % 70 / 1000.0::float8 AS coupon, 0.01 + id * 17 % 90 / 1000.0::float8 AS yield,
       (ARRAY[1, 2, 4])[1 + id % 3]::float8 AS frequency,
       (ARRAY['30/360', 'ACTUAL', 'ACT/360', 'ACT/365', 'EU30/360'])[1 + id % 5] AS basis
FROM generate_series(1, :bonds) id;
INSERT INTO bonds SELECT * FROM local_bonds;

CREATE TABLE local_flows AS
SELECT deal, date '2020-01-31' + n * 91 AS day, CASE WHEN n = 0 THEN -1000 ELSE 60 + deal * n % 41 END::float8 AS amount
FROM generate_series(1, 200) deal, generate_series(0, 23) n;
INSERT INTO flows SELECT * FROM local_flows;

-- Foreign tables are analyzed only when they are named; without, the planner guesses and sends less.
ANALYZE bonds;
ANALYZE flows;
ANALYZE local_bonds, local_flows;
