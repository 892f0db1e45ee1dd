-- On the coordinator: tables in two parts, each a table of a shard. The servers' extensions option says that the functions
-- of zelkovan are there too and answer alike, so that calls of them may be sent.
CREATE EXTENSION zelkovan;
CREATE EXTENSION postgres_fdw;
CREATE SERVER shard0 FOREIGN DATA WRAPPER postgres_fdw
    OPTIONS (host :'folder', port '2', dbname 'postgres', extensions 'zelkovan', async_capable 'true');
CREATE SERVER shard1 FOREIGN DATA WRAPPER postgres_fdw
    OPTIONS (host :'folder', port '3', dbname 'postgres', extensions 'zelkovan', async_capable 'true');
CREATE USER MAPPING FOR CURRENT_USER SERVER shard0 OPTIONS (user 'tester');
CREATE USER MAPPING FOR CURRENT_USER SERVER shard1 OPTIONS (user 'tester');

CREATE TABLE bonds (id int NOT NULL, issuer int NOT NULL, settlement date NOT NULL, maturity date NOT NULL,
                    coupon float8 NOT NULL, yield float8 NOT NULL, frequency float8 NOT NULL, basis text NOT NULL)
    PARTITION BY HASH (issuer);
CREATE FOREIGN TABLE bonds0 PARTITION OF bonds FOR VALUES WITH (MODULUS 2, REMAINDER 0)
    SERVER shard0 OPTIONS (table_name 'bonds');
CREATE FOREIGN TABLE bonds1 PARTITION OF bonds FOR VALUES WITH (MODULUS 2, REMAINDER 1)
    SERVER shard1 OPTIONS (table_name 'bonds');

CREATE TABLE flows (deal int NOT NULL, day date NOT NULL, amount float8 NOT NULL) PARTITION BY HASH (deal);
CREATE FOREIGN TABLE flows0 PARTITION OF flows FOR VALUES WITH (MODULUS 2, REMAINDER 0)
    SERVER shard0 OPTIONS (table_name 'flows');
CREATE FOREIGN TABLE flows1 PARTITION OF flows FOR VALUES WITH (MODULUS 2, REMAINDER 1)
    SERVER shard1 OPTIONS (table_name 'flows');

-- A group that lies in one part may be worked out there.
ALTER DATABASE postgres SET enable_partitionwise_aggregate = on;
