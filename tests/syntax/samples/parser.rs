#![allow(dead_code)]
//! Reads lists of numbers.
use std::collections::HashMap;
use std::fmt::{self, Display};

/* a block /* with a nested one */ still a comment */
#[derive(Debug, Clone, PartialEq)]
#[cfg_attr(test, doc = "a [bracket] and a \"quote\"")]
pub enum Token<'a> {
    Word(&'a str),
    Number(f64),
    Mark(char), // 'x'
}

pub struct Parser<'src, T: ?Sized + 'static> {
    text: &'src str,
    place: usize,
    seen: HashMap<String, Box<T>>,
}

const MARKS: [char; 9] = ['a', '\'', '\\', '\n', '"', '/', ' ', '\x41', '\u{1F600}'];
const BYTES: &[u8] = b"bytes \x00 \"and\" more";
const LIMIT: u64 = 1_000_000u64;
const MASK: i32 = 0xFF_i32 & !0b1010 | 0o17;
const SMALL: f64 = 1.5e-3;
static RAW: &str = r#"a "raw" text with \n
over lines"#;
static WINDOWS: &str = r"C:\new\";
static MANY: &str = r##"with "# inside"##;

impl<'a> Parser<'a, dyn Display> {
    /// Gives the next token, `None` at the end.
    pub fn next(&mut self) -> Option<Result<Token<'a>, Error>> {
        let rest = &self.text[self.place..];
        let first = rest.chars().next()?;
        match first {
            '0'..='9' | '-' => Some(Ok(Token::Number(rest.parse().unwrap_or(0.0)))),
            'a' | b'b' if !rest.is_empty() => None,
            _ => Some(Err(Error::new(format!("unexpected {first:?} at {}", self.place)))),
        }
    }

    unsafe fn skip(&self) -> *const u8 {
        'outer: loop {
            for i in 0..10 {
                if i == 5 { continue 'outer; } else { break 'outer; }
            }
        }
        self.text.as_ptr().add(1 << 3)
    }
}

macro_rules! list {
    ($($x:expr),* $(,)?) => { vec![$($x),*] };
}

pub async fn run(input: impl Into<String>) -> Result<(), Box<dyn std::error::Error>> {
    let text = "a text
        over lines, with \u{e4} and \\";
    let add = |a: i64, b: i64| -> i64 { a + b };
    println!("{}", list![1, 2, 3].len() as u32 + add(1, 2) as u32);
    assert_eq!(true, !false);
    where_from().await?;
    Ok(())
}
/* open /* twice */ still open
fn hidden() {}
