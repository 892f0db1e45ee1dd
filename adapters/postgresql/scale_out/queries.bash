# What is asked of the portfolio: a name, what becomes of it, the query with tables bonds and flows.
#   sent      the shards call the function
#   kept      the coordinator calls it, row by row as they come from the shards
ask_all() {
    ask filter sent "SELECT id FROM bonds
        WHERE fin_price(settlement, maturity, coupon, yield, 100, frequency, basis) < 80"
    ask filter_without_basis sent "SELECT id FROM bonds
        WHERE fin_price(settlement, maturity, coupon, yield, 100, frequency) < 80"
    ask filter_basis_code sent "SELECT id FROM bonds
        WHERE fin_price(settlement, maturity, coupon, yield, 100, frequency, 1) < 80"
    ask filter_basis_constant kept "SELECT id FROM bonds
        WHERE fin_price(settlement, maturity, coupon, yield, 100, frequency, 'ACTUAL') < 80"
    ask select_list kept "SELECT id, fin_price(settlement, maturity, coupon, yield, 100, frequency, basis) AS price
        FROM bonds"
    ask price_of_groups sent "SELECT issuer, id, min(fin_price(settlement, maturity, coupon, yield, 100, frequency, basis))
        AS price FROM bonds GROUP BY issuer, id"
    ask per_issuer sent "SELECT issuer, count(*),
        max(fin_price(settlement, maturity, coupon, yield, 100, frequency, basis)) AS dearest,
        min(fin_duration(settlement, maturity, coupon, yield, frequency, basis)) AS shortest
        FROM bonds GROUP BY issuer"
    ask per_frequency kept "SELECT frequency, max(fin_price(settlement, maturity, coupon, yield, 100, frequency, basis))
        FROM bonds GROUP BY frequency"
    ask rate_of_deals sent "SELECT deal, fin_xirr(amount, day) AS rate, fin_npv(0.02, amount, day) AS value
        FROM flows GROUP BY deal"
    ask rates_above sent "SELECT deal FROM flows GROUP BY deal HAVING fin_xirr(amount, day) > 0.1"
    ask ordered_by_query sent "SELECT deal, fin_irr(amount ORDER BY day) AS rate FROM flows GROUP BY deal"
    ask rate_of_all kept "SELECT fin_xirr(amount, day) AS rate FROM flows"
}
