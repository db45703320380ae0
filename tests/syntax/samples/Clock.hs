{-# LANGUAGE OverloadedStrings, LambdaCase #-}
-- | A clock. "Quotes" mean nothing here.
{- A long remark {- nested -} still a remark
   main = hidden -}
module Town.Clock
  ( Clock (..)
  , tick, (<+>)
  ) where

import qualified Data.Map as Map
import Data.Char (isDigit, toUpper)
import Control.Monad hiding (forM_)

data Hand = Hour | Minute deriving (Eq, Show, Ord)

-- The state of a clock
data Clock a = Clock
  { hours :: !Int
  , name' :: String
  , marks :: [Char]
  } deriving stock (Show)

newtype Parser a = Parser { runParser :: String -> Maybe (a, String) }

class Monoid' m where
  (<+>) :: m -> m -> m
  zero' :: m
infixr 6 <+>

instance Functor Parser where
  fmap f (Parser p) = Parser $ \s -> case p s of
    Nothing -> Nothing
    Just (a, rest) -> Just (f a, rest)

letters :: [Char]
letters = ['a', '\'', '\\', '\n', '"', ' ', '\x41', '\1234', '(', 'Z']

text, other :: String
text = "a \"text\"\t\1234\&5 and -- no remark"
other = "first" ++ show 'x' ++ "\
  \second"

tick :: Int -> Clock a -> Either String (Clock a)
tick n clock@Clock { hours = h }
  | n < 0 = Left "negative"
  | h' >= limit, n /= 5 = Right clock { hours = h' `mod` 12 }
  | otherwise = Right clock
  where
    h' = h + n
    limit = 0xFF * 1_000 `div` 2
    small = 1.5e-3 ** 2 ^ 3

main :: IO ()
main = do
  let xs = [x * 2 | x <- [1 .. 10], even x, x /= 4]
      add = \a b -> a + b
  line <- getLine
  forM_ xs $ \x -> do
    when (x > 5 && not (null line) || True) $ putStrLn ("x: " <> show x)
  mapM_ print . take 5 . filter isDigit $ line
  if null line then return () else print (foldr (+) 0 xs)
  print $ (`elem` xs) <$> Map.lookup "key" mempty
  where go f' x' = f' x'
open = "never closed
after = True
{- never closed
hidden = False
