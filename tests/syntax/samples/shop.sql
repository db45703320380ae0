-- A shop. "Quotes" and 'marks' mean nothing here.
/* A long remark;
   SELECT hidden FROM nothing; */
CREATE TABLE IF NOT EXISTS customers (
    id          BIGSERIAL PRIMARY KEY,
    name        VARCHAR(100) NOT NULL DEFAULT 'it''s "unknown"',
    email       text UNIQUE CHECK (email LIKE '%@%'),
    balance     numeric(10, 2) DEFAULT 0.00,
    born        date,
    active      boolean DEFAULT true,
    created_at  timestamp with time zone DEFAULT CURRENT_TIMESTAMP
);

create index customers_name on customers using btree (lower(name));

INSERT INTO customers (name, email, balance) VALUES
    ('Anna', 'anna@example.org', 12.50), -- the first
    ('O''Brien', NULL, -1e3),
    (E'tab\t\'quoted\' \\', 'x', 0xFF);

WITH RECURSIVE totals (customer, total) AS (
    SELECT c.id, SUM(o.price * o.amount)
    FROM customers AS c
    LEFT JOIN orders o ON o.customer = c.id AND o.state <> 'lost'
    WHERE c.active IS NOT NULL
      AND (c.balance >= 100 OR c.name IN ('x', 'y'))
      AND o.day BETWEEN DATE '2024-01-01' AND now()
    GROUP BY c.id
    HAVING COUNT(*) > 1
    UNION ALL
    SELECT 1, 2
)
SELECT "c"."name", `t`.`total`, COALESCE(t.total, 0) || ' euro' AS "the total",
       CASE WHEN t.total > 1000 THEN 'big' ELSE 'small' END,
       ROW_NUMBER() OVER (PARTITION BY c.born ORDER BY t.total DESC NULLS LAST)
FROM totals t, customers c
WHERE EXISTS (SELECT * FROM orders WHERE customer = c.id)
ORDER BY 2 DESC
LIMIT 10 OFFSET 20;

UPDATE customers SET balance = balance * 1.05, name = upper(name) WHERE id = @id;
DELETE FROM orders WHERE price < 0 OR amount != 1;
ALTER TABLE customers ADD COLUMN note text;
DROP VIEW old_customers CASCADE;

CREATE OR REPLACE FUNCTION pay(customer integer, amount numeric) RETURNS void AS $$
DECLARE
    old numeric := 0;
BEGIN
    IF amount <= 0 THEN
        RAISE EXCEPTION 'bad amount: %', amount;
    END IF;
    FOR i IN 1..10 LOOP
        UPDATE customers SET balance = balance - amount WHERE id = customer;
    END LOOP;
    COMMIT;
END;
$$ LANGUAGE plpgsql;

GRANT SELECT ON customers TO reader;
BEGIN TRANSACTION; ROLLBACK;
EXPLAIN ANALYZE SELECT 'over
two lines' FROM dual;
select 'never closed
from hidden;
