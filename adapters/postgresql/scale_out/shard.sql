-- On each shard: its part of the portfolio. :shard is its number, 0 or 1, of two.
CREATE EXTENSION zelkovan;
CREATE TABLE bonds (id int NOT NULL, issuer int NOT NULL, settlement date NOT NULL, maturity date NOT NULL,
                    coupon float8 NOT NULL, yield float8 NOT NULL, frequency float8 NOT NULL, basis text NOT NULL);
CREATE TABLE flows (deal int NOT NULL, day date NOT NULL, amount float8 NOT NULL);
